#pragma once

#include <QString>

// What the database declares about one column: its kind, defined size and
// whether it accepts nulls. Read from the database at run time.
struct FieldInfo
{
    enum class Type { Unknown, Integer, Currency, Double, Date, Text, Memo, Boolean };

    QString table;
    QString name;
    Type type = Type::Unknown;
    int size = 0;   // defined size of a Text column; 0 otherwise
    bool required = false;   // NOT NULL
    bool isKey = false;

    bool isValid() const { return type != Type::Unknown; }
    bool isNumeric() const { return type == Type::Integer || type == Type::Currency || type == Type::Double; }
    bool isCharacter() const { return type == Type::Text || type == Type::Memo; }

    static Type typeFromDeclaration(const QString &declared, int *size);
};
