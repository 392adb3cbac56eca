#pragma once

#include "FieldInfo.h"

#include <QHash>
#include <QList>
#include <QObject>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QVariant>
#include <QVector>

// A keyset cursor over the rows of one table: the ordered keys of a query are
// held in memory, the current row is read on demand. Holds a million rows.
// Edits are buffered on the current row and written by update().
// Failures of the database throw TmError.
class Recordset : public QObject
{
    Q_OBJECT

public:
    enum class EditMode { None, Editing, Adding };

    explicit Recordset(QObject *parent = nullptr);

    // sql selects rows of table, in the order wanted, and includes keyColumn.
    void open(const QString &table, const QString &keyColumn, const QString &sql, const QVariantList &binds = {});
    void close();
    bool isOpen() const { return m_open; }

    const QString &table() const { return m_table; }
    const QString &keyColumn() const { return m_keyColumn; }
    const QString &sql() const { return m_sql; }

    int recordCount() const { return int(m_keys.size()); }
    int absolutePosition() const;   // 1-based; 0 before the first or after the last row; -1 while adding
    bool bof() const { return m_editMode != EditMode::Adding && (m_pos < 0 || m_keys.isEmpty()); }
    bool eof() const { return m_editMode != EditMode::Adding && m_pos >= m_keys.size(); }
    bool onRow() const { return m_editMode == EditMode::Adding || (m_pos >= 0 && m_pos < m_keys.size()); }
    EditMode editMode() const { return m_editMode; }

    void moveFirst();
    void moveLast();
    void moveNext();
    void movePrevious();
    void moveTo(int position);   // 1-based
    bool find(const QVariant &key);   // true and positioned when found
    bool findFirst(const QString &column, const QVariant &value);

    QVariant key() const;
    QVariant value(const QString &column) const;   // stored value, or the pending edit
    bool isNull(const QString &column) const { return value(column).isNull(); }
    const QList<FieldInfo> &fields() const { return m_fields; }
    FieldInfo field(const QString &column) const;

    void setValue(const QString &column, const QVariant &storedValue);
    void addNew();
    void update();
    void cancelUpdate();
    void deleteCurrent();
    void requery();
    // Reads the keys again after rows were added, deleted or changed, by this
    // cursor or elsewhere: it stays on its row, now in its ordered place. A row
    // gone from the table gives way to its neighbour, the next (the previous
    // when it was the last); a row that no longer matches the query stays at the end.
    // A new row being added stays pending.
    void resync();

signals:
    void moveComplete();

private:
    void loadKeys();
    void loadRow();
    bool rowExists(qint64 key) const;
    void moveToIndex(qsizetype index);
    int columnIndex(const QString &column) const;

    bool m_open = false;
    QString m_table;
    QString m_keyColumn;
    QString m_sql;
    QVariantList m_binds;
    QList<FieldInfo> m_fields;
    QVector<qint64> m_keys;
    QHash<qint64, qsizetype> m_index;   // key to position, built when first needed
    qsizetype m_pos = -1;
    qsizetype m_posBeforeAdd = -1;
    QVariantList m_row;   // stored values of the current row, in field order
    QHash<int, QVariant> m_changes;   // pending values by field index
    EditMode m_editMode = EditMode::None;
};
