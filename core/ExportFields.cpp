#include "ExportFields.h"

namespace ExportFields {
namespace {

Field column(const char *caption, const char *name, Shape shape = Shape::Text)
{
    return {QString::fromUtf8(caption), QString::fromUtf8(name), {}, shape};
}

// A lookup's description, read beside each client by its key.
Field lookup(const char *caption, const char *table)
{
    const QString t = QString::fromUtf8(table);
    return {QString::fromUtf8(caption), t + QStringLiteral("Description"),
            QStringLiteral("(SELECT %1Description FROM %1 WHERE %1ID=Client.%1ID)").arg(t), Shape::Text};
}

QList<Field> clientFields()
{
    return {
        column("Client ID", "ClientID", Shape::Number),
        column("Last Name", "LastName"),
        column("First Name", "FirstName"),
        column("Middle Initial", "MiddleInitial"),
        column("Social Security Number", "SocialSecurityNumber", Shape::SSN),
        column("Drivers License Number", "DriversLicenseNumber"),
        column("Birth Date", "BirthDate", Shape::Date),
        column("Gender", "Gender"),
        lookup("Ethnic Origin", "EthnicOrigin"),
        lookup("Marital Status", "MaritalStatus"),
        column("Address", "Address"),
        column("City", "City"),
        column("State", "State"),
        column("Zip Code", "ZipCode"),
        column("Home Phone", "HomePhone", Shape::Phone),
        column("Work Phone", "WorkPhone", Shape::Phone),
        column("Mobile Phone", "MobilePhone", Shape::Phone),
        column("Fax", "Fax", Shape::Phone),
        lookup("Education Level", "EducationLevel"),
        lookup("Housing", "Housing"),
        lookup("Religion", "ReligiousPreference"),
        lookup("Other Assistance", "OtherAssistance"),
        column("Employer Name", "EmployerName"),
        column("Employer Address", "EmployerAddress"),
        column("Employer City", "EmployerCity"),
        column("Employer State", "EmployerState"),
        column("Employer Zip Code", "EmployerZip"),
        column("Number of Years Worked", "EmployerDurationYears", Shape::Number),
        column("Number of Months Worked", "EmployerDurationMonths", Shape::Number),
        column("Comments", "Comments"),
        column("Medical Problems", "MedicalProblems"),
        column("Dietary Requirements", "DietaryRequirements"),
        column("FEMA Contacted", "FEMAContacted", Shape::YesNo),
        column("FEMA Comments", "FEMAComments"),
        column("Former Address", "FormerAddress"),
        column("Relatives Searching For", "RelativesSearchingFor"),
    };
}

QList<Field> volunteerFields()
{
    return {
        column("Volunteer ID", "VolunteerID", Shape::Number),
        column("Last Name", "LastName"),
        column("First Name", "FirstName"),
        column("Middle Initial", "MiddleInitial"),
        column("Address", "Address"),
        column("City", "City"),
        column("State", "State"),
        column("Zip Code", "ZipCode"),
        column("Home Phone", "HomePhone", Shape::Phone),
        column("Work Phone", "WorkPhone", Shape::Phone),
        column("Mobile Phone", "MobilePhone", Shape::Phone),
        column("Fax", "Fax", Shape::Phone),
        column("E-Mail Address", "EMailAddress"),
        column("Emergency Contact", "EmergencyContact"),
        column("Emergency Contact Phone", "EmergencyContactPhone", Shape::Phone),
        column("Affiliation", "Affiliation"),
        column("Number In Party", "NumberInParty", Shape::Number),
        column("Comments", "Comments"),
    };
}

}   // namespace

const QList<Field> &all(RecordScope::Kind kind)
{
    static const QList<Field> clients = clientFields();
    static const QList<Field> volunteers = volunteerFields();
    return kind == RecordScope::Kind::Volunteer ? volunteers : clients;
}

QStringList captions(RecordScope::Kind kind)
{
    QStringList list;
    for (const Field &f : all(kind))
        list << f.caption;
    return list;
}

QList<Field> byCaption(RecordScope::Kind kind, const QStringList &wanted, QStringList *unknown)
{
    unknown->clear();
    for (const QString &w : wanted) {
        if (!captions(kind).contains(w.trimmed(), Qt::CaseInsensitive))
            unknown->append(w.trimmed());
    }
    QList<Field> chosen;
    if (!unknown->isEmpty())
        return chosen;
    for (const Field &f : all(kind)) {
        for (const QString &w : wanted) {
            if (f.caption.compare(w.trimmed(), Qt::CaseInsensitive) == 0) {
                chosen << f;
                break;
            }
        }
    }
    return chosen;
}

}   // namespace ExportFields
