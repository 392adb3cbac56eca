#include "ClientImport.h"

#include "ClientRules.h"
#include "FieldRules.h"
#include "FoldedText.h"
#include "basDatabase.h"
#include "basTendmark.h"

#include <QDate>
#include <QHash>
#include <QRegularExpression>
#include <QSqlQuery>
#include <algorithm>

namespace ClientImport {

const QList<Field> &fields()
{
    static const QList<Field> list = {
        {"Last Name", "LastName"},
        {"First Name", "FirstName"},
        {"Middle Initial", "MiddleInitial"},
        {"Social Security Number", "SocialSecurityNumber", Kind::Ssn},
        {"Drivers License Number", "DriversLicenseNumber"},
        {"Birth Date", "BirthDate", Kind::Date},
        {"Gender", "Gender", Kind::Code, "Gender", "GenderCode"},
        {"Ethnic Origin", "EthnicOriginID", Kind::Lookup, "EthnicOrigin", "EthnicOriginDescription"},
        {"Marital Status", "MaritalStatusID", Kind::Lookup, "MaritalStatus", "MaritalStatusDescription"},
        {"Address", "Address"},
        {"City", "City"},
        {"State", "State", Kind::Code, "States", "StateCode"},
        {"Zip Code", "ZipCode"},
        {"Home Phone", "HomePhone", Kind::Phone},
        {"Work Phone", "WorkPhone", Kind::Phone},
        {"Mobile Phone", "MobilePhone", Kind::Phone},
        {"Fax", "Fax", Kind::Phone},
        {"Education Level", "EducationLevelID", Kind::Lookup, "EducationLevel", "EducationLevelDescription"},
        {"Housing", "HousingID", Kind::Lookup, "Housing", "HousingDescription"},
        {"Religion", "ReligiousPreferenceID", Kind::Lookup, "ReligiousPreference", "ReligiousPreferenceDescription"},
        {"Other Assistance", "OtherAssistanceID", Kind::Lookup, "OtherAssistance", "OtherAssistanceDescription"},
        {"Employer Name", "EmployerName"},
        {"Employer Address", "EmployerAddress"},
        {"Employer City", "EmployerCity"},
        {"Employer State", "EmployerState", Kind::Code, "States", "StateCode"},
        {"Employer Zip Code", "EmployerZip"},
        {"Number of Years Worked", "EmployerDurationYears", Kind::Number},
        {"Number of Months Worked", "EmployerDurationMonths", Kind::Number},
        {"Comments", "Comments"},
        {"Medical Problems", "MedicalProblems"},
        {"Dietary Requirements", "DietaryRequirements"},
        {"FEMA Eligible", "FEMAEligible", Kind::YesNo},
        {"FEMA Contacted", "FEMAContacted", Kind::YesNo},
        {"FEMA Comments", "FEMAComments"},
        {"Former Address", "FormerAddress"},
        {"Relatives Searching For", "RelativesSearchingFor"},
    };
    return list;
}

int fieldIndex(const QString &header)
{
    const QString name = header.trimmed();
    const QList<Field> &all = fields();
    for (int i = 0; i < all.size(); ++i)
        if (name.compare(QLatin1String(all[i].caption), Qt::CaseInsensitive) == 0
            || name.compare(QLatin1String(all[i].column), Qt::CaseInsensitive) == 0)
            return i;
    return -1;
}

QList<int> automaticMapping(const QStringList &header)
{
    QList<int> mapping;
    for (const QString &name : header) {
        const int field = fieldIndex(name);
        mapping << (mapping.contains(field) ? -1 : field);   // a field filled twice keeps its first column
    }
    return mapping;
}

QStringList unmappedRequired(const QList<int> &mapping)
{
    QStringList missing;
    for (int i = 0; i < fields().size(); ++i)
        if (ClientRules::requiredColumns().contains(QLatin1String(fields()[i].column)) && !mapping.contains(i))
            missing << fields()[i].name();
    return missing;
}

int Plan::importable() const
{
    return int(std::count_if(rows.cbegin(), rows.cend(), [](const Row &r) { return r.ok(); }));
}

namespace {

// A date as the export writes it ("05-Mar-61": the latest year not in the future), or as typed.
QDate parseDate(const QString &text)
{
    static const QRegularExpression dayMonthYear(QStringLiteral("^(\\d{1,2})-([A-Za-z]{3})-(\\d{2}|\\d{4})$"));
    const auto m = dayMonthYear.match(text);
    if (!m.hasMatch())
        return basTendmark::ParseDate(text);
    static const QStringList months = {"jan", "feb", "mar", "apr", "may", "jun", "jul", "aug", "sep", "oct", "nov", "dec"};
    const int month = int(months.indexOf(m.captured(2).toLower())) + 1;
    int year = m.captured(3).toInt();
    if (m.captured(3).size() == 2) {
        const int thisYear = QDate::currentDate().year();
        year += thisYear / 100 * 100;
        if (year > thisYear)
            year -= 100;
    }
    return month > 0 ? QDate(year, month, m.captured(1).toInt()) : QDate();
}

bool yesNo(const QString &text, bool *value)
{
    static const QStringList yes = {"yes", "y", "true", "1", "-1"};
    static const QStringList no = {"no", "n", "false", "0", ""};
    *value = yes.contains(text.toLower());
    return *value || no.contains(text.toLower());
}

QString addressKey(const QString &address, const QString &city, const QString &state)
{
    return FoldedText::address(address) + QChar(0x1F) + FoldedText::name(city) + QChar(0x1F) + state;
}

// What the checks need from the database, read once.
struct OnFile
{
    QList<QHash<QString, QVariant>> choices;   // per field: lower-case text -> stored value
    QList<int> descriptionSize;   // per field: the size of a lookup's description column
    QList<FieldInfo> info;   // per field: its Client column
    QHash<QString, qint64> ssn;
    QHash<QString, qint64> address;

    OnFile()
    {
        const QList<Field> &all = fields();
        for (const Field &f : all) {
            QHash<QString, QVariant> map;
            int size = 0;
            if (f.table) {
                const QString table = QString::fromLatin1(f.table);
                const QString text = QString::fromLatin1(f.tableColumn);
                const FieldInfo key = basDatabase::Fields(table).constFirst();
                QSqlQuery q = basDatabase::Execute(QStringLiteral("SELECT %1, %2 FROM %3").arg(key.name, text, table));
                while (q.next())
                    map.insert(q.value(1).toString().trimmed().toLower(),
                               f.kind == Kind::Code ? q.value(1).toString().trimmed() : q.value(0));
                size = basDatabase::Field(table, text).size;
            }
            choices << map;
            info << basDatabase::Field(QStringLiteral("Client"), QString::fromLatin1(f.column));
            descriptionSize << size;
        }
        QSqlQuery q = basDatabase::Execute(QStringLiteral("SELECT ClientID, SocialSecurityNumber, Address, City, State FROM Client"));
        while (q.next()) {
            const qint64 id = q.value(0).toLongLong();
            if (const QString s = q.value(1).toString(); !s.isEmpty())
                ssn.insert(s, id);
            if (!q.value(2).toString().isEmpty())
                address.insert(addressKey(q.value(2).toString(), q.value(3).toString(), q.value(4).toString()), id);
        }
    }
};

class Checker
{
public:
    explicit Checker(QList<Unknown> &unknowns) : m_unknowns(unknowns) { }

    void checkRow(const CsvReader::Record &record, const QList<int> &mapping, Row &row)
    {
        const QList<Field> &all = fields();
        row.line = record.line;
        for (int i = 0; i < all.size(); ++i)
            row.values << QVariant();
        if (!record.problem.isEmpty()) {
            row.problems << record.problem;
            return;
        }
        QStringList texts(all.size());
        for (int c = 0; c < mapping.size() && c < record.fields.size(); ++c)
            if (mapping[c] >= 0)
                texts[mapping[c]] = plain(record.fields[c]);
        for (int i = 0; i < all.size(); ++i)
            checkValue(i, texts[i], row);
        checkDuplicates(row);
        if (row.ok())
            for (int field : std::as_const(row.unknownLookups))
                countUnknown(field, row.values[field].toString());
    }

private:
    // A spreadsheet's cell as typed: blanks around it gone, and the apostrophe
    // the export puts before a leading =, +, - or @ taken away again.
    static QString plain(const QString &cell)
    {
        QString text = cell.trimmed();
        static const QString formulaStarts = QStringLiteral("=+-@");
        if (text.size() > 1 && text.at(0) == u'\'' && formulaStarts.contains(text.at(1)))
            text.remove(0, 1);
        return text;
    }

    void checkValue(int index, const QString &text, Row &row)
    {
        const Field &f = fields()[index];
        const QString caption = f.name();
        const FieldInfo &info = m_onFile.info[index];
        if (text.isEmpty()) {
            if (ClientRules::requiredColumns().contains(info.name))
                row.problems << caption + QStringLiteral(" is required.");
            if (f.kind == Kind::YesNo)
                row.values[index] = 0;
            return;
        }
        QString value = text;   // the value as the client window would hold it
        QString message;
        switch (f.kind) {
        case Kind::Ssn:
        case Kind::Phone: {
            value = basTendmark::StripPhoneNumber(text);
            static const QRegularExpression digits(QStringLiteral("^\\d+$"));
            if (!digits.match(value).hasMatch()) {
                row.problems << caption + QStringLiteral(" '%1' must be digits only.").arg(text);
                return;
            }
            if (f.kind == Kind::Ssn && value.size() != 9) {
                row.problems << caption + QStringLiteral(" '%1' must have nine digits.").arg(text);
                return;
            }
            break;
        }
        case Kind::Date: {
            const QDate date = parseDate(text);
            if (!date.isValid()) {
                row.problems << caption + QStringLiteral(" '%1' is not a date (mm/dd/yyyy, yyyy-mm-dd or dd-Mon-yy).").arg(text);
                return;
            }
            value = basTendmark::FormatDate(date);
            break;
        }
        case Kind::Code: {
            const QVariant code = m_onFile.choices[index].value(text.toLower());
            if (!code.isValid()) {
                row.problems << caption + QStringLiteral(" '%1' is not one of its choices.").arg(text);
                return;
            }
            row.values[index] = code;
            return;
        }
        case Kind::Lookup:
            if (const QVariant key = m_onFile.choices[index].value(text.toLower()); key.isValid()) {
                row.values[index] = key;
                return;
            }
            if (FieldRules::characterCount(text) > m_onFile.descriptionSize[index])
                row.problems << caption
                        + QStringLiteral(" '%1' cannot exceed %2 characters.").arg(text).arg(m_onFile.descriptionSize[index]);
            else
                row.unknownLookups << index;
            row.values[index] = text;   // a description not on file yet: resolved when imported
            return;
        case Kind::Number: {
            bool ok = false;
            const int n = text.toInt(&ok);
            if (!ok || n < 0 || n > 999) {
                row.problems << caption + QStringLiteral(" '%1' must be a whole number from 0 to 999.").arg(text);
                return;
            }
            row.values[index] = n;
            return;
        }
        case Kind::YesNo: {
            bool yes = false;
            if (!yesNo(text, &yes))
                row.problems << caption + QStringLiteral(" '%1' must be Yes or No.").arg(text);
            row.values[index] = yes ? 1 : 0;
            return;
        }
        case Kind::Text:
            value = FieldRules::clean(text, info.type == FieldInfo::Type::Memo);
            break;
        }
        if (!ClientRules::valueIsValid(info, value, message)) {
            row.problems << caption + message;
            return;
        }
        row.values[index] = basDatabase::StorageValue(info, value);
    }

    void countUnknown(int field, const QString &description)
    {
        const QString key = QString::number(field) + u'|' + description.toLower();
        auto it = m_unknownIndex.constFind(key);
        if (it == m_unknownIndex.constEnd()) {
            it = m_unknownIndex.insert(key, int(m_unknowns.size()));
            m_unknowns << Unknown {field, description, 0};
        }
        ++m_unknowns[*it].rows;
    }

    void checkDuplicates(Row &row)
    {
        static const int ssnField = fieldIndex(QStringLiteral("SocialSecurityNumber"));
        static const int addressField = fieldIndex(QStringLiteral("Address"));
        static const int cityField = fieldIndex(QStringLiteral("City"));
        static const int stateField = fieldIndex(QStringLiteral("State"));
        // A number already seen is named even when the row fails for other reasons too.
        const QString ssn = row.values[ssnField].toString();
        const bool valid = row.ok();
        if (ssn.isEmpty())
            return;
        if (const auto id = m_onFile.ssn.constFind(ssn); id != m_onFile.ssn.constEnd())
            row.problems
                << QStringLiteral("Social Security Number %1 is already on file for client %2.").arg(basTendmark::FormatSSN(ssn)).arg(*id);
        else if (const auto line = m_fileSsn.constFind(ssn); line != m_fileSsn.constEnd())
            row.problems << QStringLiteral("Social Security Number %1 is on line %2 already.").arg(basTendmark::FormatSSN(ssn)).arg(*line);
        else if (valid)
            m_fileSsn.insert(ssn, row.line);
        if (!row.ok())
            return;

        const QString key
            = addressKey(row.values[addressField].toString(), row.values[cityField].toString(), row.values[stateField].toString());
        if (const auto id = m_onFile.address.constFind(key); id != m_onFile.address.constEnd())
            row.notes << QStringLiteral("The address is already on file for client %1.").arg(*id);
        else if (const auto line = m_fileAddress.constFind(key); line != m_fileAddress.constEnd())
            row.notes << QStringLiteral("The address is on line %1 too.").arg(*line);
        else
            m_fileAddress.insert(key, row.line);
    }

    OnFile m_onFile;
    QList<Unknown> &m_unknowns;
    QHash<QString, int> m_unknownIndex;
    QHash<QString, int> m_fileSsn;
    QHash<QString, int> m_fileAddress;
};

}   // namespace

Plan check(const CsvReader::Table &table, const QList<int> &mapping)
{
    Plan plan;
    Checker checker(plan.unknowns);
    plan.rows.reserve(table.records.size());
    for (const CsvReader::Record &record : table.records) {
        plan.rows << Row {};
        checker.checkRow(record, mapping, plan.rows.last());
    }
    std::stable_sort(plan.unknowns.begin(), plan.unknowns.end(), [](const Unknown &a, const Unknown &b) { return a.field < b.field; });
    return plan;
}

}   // namespace ClientImport
