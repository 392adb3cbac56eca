#include "DemoData.h"
#include "LookupTables.h"
#include "SqlText.h"
#include "Transaction.h"

#include <QList>
#include <QRandomGenerator>
#include <QScopeGuard>
#include <QSet>
#include <QSqlError>
#include <QSqlQuery>
#include <QStringList>
#include <QVariant>

#include <algorithm>
#include <initializer_list>

namespace DemoData {
namespace {

// Greater Dayton, Ohio: the pantry's service area.
const char *const kState = "OH";
struct ZipCity { const char *zip; const char *city; };
const ZipCity kZips[] = {
    {"45402", "Dayton"}, {"45403", "Dayton"}, {"45404", "Dayton"}, {"45405", "Dayton"},
    {"45406", "Dayton"}, {"45409", "Dayton"}, {"45410", "Dayton"}, {"45414", "Dayton"},
    {"45415", "Dayton"}, {"45416", "Dayton"}, {"45417", "Dayton"}, {"45419", "Oakwood"},
    {"45420", "Kettering"}, {"45424", "Huber Heights"}, {"45426", "Trotwood"}, {"45429", "Kettering"},
    {"45430", "Beavercreek"}, {"45431", "Riverside"}, {"45432", "Beavercreek"}, {"45434", "Beavercreek"},
    {"45439", "Moraine"}, {"45440", "Kettering"}, {"45449", "West Carrollton"}, {"45458", "Centerville"},
    {"45459", "Centerville"}, {"45305", "Bellbrook"}, {"45309", "Brookville"}, {"45315", "Clayton"},
    {"45322", "Englewood"}, {"45324", "Fairborn"}, {"45327", "Germantown"}, {"45342", "Miamisburg"},
    {"45345", "New Lebanon"}, {"45371", "Tipp City"}, {"45373", "Troy"}, {"45377", "Vandalia"},
    {"45385", "Xenia"}, {"45387", "Yellow Springs"}, {"45066", "Springboro"}, {"45068", "Waynesville"},
    {"45502", "Springfield"}, {"45503", "Springfield"},
};
const int kRiversideZip = 17;

const char *const kSurnames[] = {
    "Smith", "Johnson", "Williams", "Brown", "Jones", "Garcia", "Miller", "Davis", "Rodriguez", "Martinez",
    "Hernandez", "Lopez", "Gonzalez", "Wilson", "Anderson", "Thomas", "Taylor", "Moore", "Jackson", "Martin",
    "Lee", "Perez", "Thompson", "White", "Harris", "Sanchez", "Clark", "Ramirez", "Lewis", "Robinson",
    "Walker", "Young", "Allen", "King", "Wright", "Scott", "Torres", "Nguyen", "Hill", "Flores",
    "Green", "Adams", "Nelson", "Baker", "Hall", "Rivera", "Campbell", "Mitchell", "Carter", "Roberts",
    "Gomez", "Phillips", "Evans", "Turner", "Diaz", "Parker", "Cruz", "Edwards", "Collins", "Reyes",
    "Stewart", "Morris", "Morales", "Murphy", "Cook", "Rogers", "Gutierrez", "Ortiz", "Morgan", "Cooper",
    "Peterson", "Bailey", "Reed", "Kelly", "Howard", "Ramos", "Kim", "Cox", "Ward", "Richardson",
    "Watson", "Brooks", "Chavez", "Wood", "James", "Bennett", "Gray", "Mendoza", "Ruiz", "Hughes",
    "Price", "Alvarez", "Castillo", "Sanders", "Patel", "Myers", "Long", "Ross", "Foster", "Jimenez",
    "Powell", "Jenkins", "Perry", "Russell", "Sullivan", "Bell", "Coleman", "Butler", "Henderson", "Barnes",
    "Gonzales", "Fisher", "Vasquez", "Simmons", "Romero", "Jordan", "Patterson", "Alexander", "Hamilton", "Graham",
    "Reynolds", "Griffin", "Wallace", "Moreno", "West", "Cole", "Hayes", "Bryant", "Herrera", "Gibson",
    "Ellis", "Tran", "Medina", "Aguilar", "Stevens", "Murray", "Ford", "Castro", "Marshall", "Owens",
    "Harrison", "Fernandez", "McDonald", "Woods", "Washington", "Kennedy", "Wells", "Vargas", "Henry", "Chen",
    "Freeman", "Webb", "Tucker", "Guzman", "Burns", "Crawford", "Olson", "Simpson", "Porter", "Hunter",
    "Gordon", "Mendez", "Silva", "Shaw", "Snyder", "Mason", "Dixon", "Muñoz", "Hunt", "Hicks",
    "Holmes", "Palmer", "Wagner", "Black", "Robertson", "Boyd", "Rose", "Stone", "Salazar", "Fox",
    "Warren", "Mills", "Meyer", "Rice", "Schmidt", "Garza", "Daniels", "Ferguson", "Nichols", "Stephens",
    "Soto", "Weaver", "Ryan", "Gardner", "Payne", "Grant", "Dunn", "Spencer", "Hawkins", "Arnold",
    "Pierce", "Hansen", "Peters", "Santos", "Hart", "Bradley", "Knight", "Elliott", "Cunningham", "Duncan",
    "O'Brien", "D'Angelo", "O'Connor", "Nguyễn", "Peña", "Hoffman", "Schneider", "Kowalski", "Jovanovic", "Dubois",
};

const char *const kMaleNames[] = {
    "James", "Robert", "John", "Michael", "David", "William", "Richard", "Joseph", "Thomas", "Christopher",
    "Charles", "Daniel", "Matthew", "Anthony", "Mark", "Donald", "Steven", "Andrew", "Paul", "Joshua",
    "Kenneth", "Kevin", "Brian", "George", "Timothy", "Ronald", "Jason", "Edward", "Jeffrey", "Ryan",
    "Jacob", "Gary", "Nicholas", "Eric", "Jonathan", "Stephen", "Larry", "Justin", "Scott", "Brandon",
    "Benjamin", "Samuel", "Gregory", "Alexander", "Patrick", "Frank", "Raymond", "Jack", "Dennis", "Jerry",
    "Tyler", "Aaron", "Jose", "Adam", "Nathan", "Henry", "Zachary", "Douglas", "Peter", "Kyle",
    "Noah", "Ethan", "Jeremy", "Walter", "Christian", "Keith", "Roger", "Terry", "Austin", "Sean",
    "Carl", "Harold", "Dylan", "Arthur", "Jesse", "Bryan", "Gabriel", "Logan", "Juan", "Elijah",
};

const char *const kFemaleNames[] = {
    "Mary", "Patricia", "Jennifer", "Linda", "Elizabeth", "Barbara", "Susan", "Jessica", "Sarah", "Karen",
    "Lisa", "Nancy", "Betty", "Sandra", "Margaret", "Ashley", "Kimberly", "Emily", "Donna", "Michelle",
    "Carol", "Amanda", "Melissa", "Deborah", "Stephanie", "Dorothy", "Rebecca", "Sharon", "Laura", "Cynthia",
    "Amy", "Kathleen", "Angela", "Shirley", "Brenda", "Emma", "Anna", "Pamela", "Nicole", "Samantha",
    "Katherine", "Christine", "Helen", "Debra", "Rachel", "Carolyn", "Janet", "Maria", "Catherine", "Heather",
    "Diane", "Olivia", "Julie", "Joyce", "Victoria", "Ruth", "Virginia", "Lauren", "Kelly", "Christina",
    "Joan", "Evelyn", "Judith", "Andrea", "Hannah", "Megan", "Cheryl", "Jacqueline", "Martha", "Madison",
    "Teresa", "Gloria", "Janice", "Kathryn", "Sophia", "Renée", "Guadalupe", "Tamika", "Latoya", "Ava",
};

const char *const kStreets[] = {
    "Salem Ave", "S Main St", "Brown St", "Wayne Ave", "Far Hills Ave", "Linden Ave", "Smithville Rd",
    "Troy St", "Keowee St", "Woodman Dr", "Wilmington Pike", "Patterson Rd", "Shroyer Rd", "Stroop Rd",
    "Dorothy Ln", "Hoover Ave", "Gettysburg Ave", "Germantown St", "Xenia Ave", "Springfield St",
    "Airway Rd", "Harshman Rd", "Needmore Rd", "Siebenthaler Ave", "Philadelphia Dr", "Catalpa Dr",
    "Forest Ave", "Grand Ave", "Superior Ave", "Oakridge Dr", "Huffman Ave", "Watervliet Ave",
    "Burkhardt Rd", "Maple St", "Oak St", "Elm St", "Cedar Ln", "Pine St", "Walnut St", "Chestnut St",
    "Park Ave", "Lincoln Ave", "Washington St", "Jefferson St", "Madison Ave", "Franklin St", "Church St",
    "Mill St", "High St", "Market St", "Spring St", "Ridge Rd", "Hillcrest Dr", "Meadow Ln", "Sunset Dr",
    "Valley St", "Lakeview Dr", "Riverside Dr", "Cherry St", "Highland Ave", "Broad St", "Kings Hwy",
};

const char *const kEmployers[] = {
    "Kroger", "Meijer", "Walmart Supercenter", "Premier Health", "Kettering Health",
    "Dayton Children's Hospital", "Dayton Public Schools", "University of Dayton", "Wright State University",
    "CareSource", "Speedway", "Dollar General", "McDonald's", "Wendy's", "Bob Evans", "Home Depot",
    "Lowe's", "Target", "Amazon Fulfillment Center", "Fuyao Glass America", "City of Dayton",
    "Montgomery County", "Greater Dayton RTA", "Staffmark", "Kelly Services", "Cracker Barrel",
    "Goodwill Easterseals", "Miami Valley Hospital", "Sunrise Senior Living", "Valley Cleaning Services",
};

const char *const kAffiliations[] = {
    "St. Albert the Great Parish", "First Baptist Church", "Westminster Presbyterian", "Temple Israel",
    "Beavercreek High School NHS", "University of Dayton Campus Ministry", "Wright State Nursing Students",
    "Kettering Rotary Club", "Scout Troop 512", "NCR Retirees Club", "CareSource Volunteers",
    "Fairmont High School", "Grace United Methodist", "Kroger Store 421", "Miami Valley Islamic Center",
};

const char *const kComments[] = {
    "Referred by St. Vincent de Paul.", "Prefers afternoon pickup.", "Needs help carrying bags to the car.",
    "Moved from Cincinnati last spring.", "Speaks Spanish; daughter translates.",
    "Recently laid off; re-check income in three months.", "No car, takes RTA route 4.",
    "Lives with elderly mother.", "Asked about utility assistance.",
    "Neighbor Ms. Carter may pick up on her behalf.", "Works nights, usually comes Saturdays.",
    "Referred by the school nurse.",
};
const char *const kDiets[] = {
    "Diabetic, low sugar", "Gluten free", "No pork", "Peanut allergy (child)", "Vegetarian", "Low sodium",
    "Lactose intolerant", "Halal only", "Soft foods only", "Needs baby formula (Similac)",
};
const char *const kMedical[] = {
    "Type 2 diabetes", "High blood pressure", "Asthma (son)", "COPD, on oxygen", "Recovering from knee surgery",
    "Chronic back pain, cannot lift heavy boxes", "Pregnant, due in the spring", "Heart condition",
    "Uses a wheelchair", "Sees a counselor at the clinic",
};
const char *const kVisitComments[] = {
    "Picked up by neighbor", "Extra produce given", "Declined canned meat", "Delivered, homebound",
    "Added diapers", "Turkey included",
};
const char *const kVolunteerComments[] = {
    "Available Tuesday and Thursday mornings", "Can drive the van", "Speaks Spanish", "Prefers the intake desk",
    "Background check on file", "Helps with the holiday baskets",
};

template <typename T, std::size_t N>
constexpr int count(const T (&)[N]) { return int(N); }

QStringList toList(const char *const *items, int n)
{
    QStringList list;
    list.reserve(n);
    for (int i = 0; i < n; ++i)
        list.append(QString::fromUtf8(items[i]));
    return list;
}
#define TM_LIST(array) toList(array, count(array))

QString iso(const QDate &date) { return date.toString(Qt::ISODate); }

struct Lookup
{
    QList<int> ids;
    QStringList descriptions;
    int find(const QString &description) const
    {
        const qsizetype i = descriptions.indexOf(description, 0);
        return i < 0 ? 0 : ids.at(i);
    }
};

struct Person
{
    QString last;
    QString first;
    QChar gender;
    int age = 0;
};

class Generator
{
public:
    Generator(QSqlDatabase db, const Options &options)
        : m_db(db), m_options(options), m_rng(options.seed),
          m_surnames(TM_LIST(kSurnames)), m_male(TM_LIST(kMaleNames)), m_female(TM_LIST(kFemaleNames)),
          m_streets(TM_LIST(kStreets)), m_employers(TM_LIST(kEmployers)), m_affiliations(TM_LIST(kAffiliations)),
          m_comments(TM_LIST(kComments)), m_diets(TM_LIST(kDiets)), m_medical(TM_LIST(kMedical)),
          m_visitComments(TM_LIST(kVisitComments)),
          m_volunteerComments(TM_LIST(kVolunteerComments)), m_state(QString::fromLatin1(kState))
    {
    }

    bool run();
    QString error() const { return m_error; }

private:
    // Random helpers. Each draws in a fixed order so that a seed always gives the same data.
    int between(int lo, int hi) { return int(m_rng.bounded(lo, hi + 1)); }
    bool percent(int p) { return int(m_rng.bounded(100)) < p; }
    bool permille(int p) { return int(m_rng.bounded(1000)) < p; }
    const QString &pick(const QStringList &list) { return list.at(m_rng.bounded(int(list.size()))); }
    int pickId(const Lookup &lookup) { return lookup.ids.at(m_rng.bounded(int(lookup.ids.size()))); }
    int idOr(const Lookup &lookup, const char *description)
    {
        const int id = lookup.find(QString::fromLatin1(description));
        return id ? id : pickId(lookup);
    }

    bool fail(const QString &what, const QSqlQuery &query)
    {
        m_error = QStringLiteral("%1: %2").arg(what, query.lastError().text());
        return false;
    }
    bool prepare(QSqlQuery &query, const QString &sql)
    {
        return query.prepare(sql) || fail(QStringLiteral("Could not prepare \"%1\"").arg(sql), query);
    }
    bool exec(QSqlQuery &query, std::initializer_list<QVariant> values, const char *table)
    {
        for (const QVariant &value : values)
            query.addBindValue(value);
        return query.exec() || fail(QStringLiteral("Could not add a row to %1").arg(QLatin1String(table)), query);
    }
    // The items of the lookup table that the given column of a record table refers to.
    bool loadLookup(const char *table, const char *column, Lookup *lookup);

    QString ssn();
    QString phone();
    QString driversLicense();
    QString middleInitial();
    QString street();
    QString birthDate(int age);
    QString memo(const QStringList &lines, int twoLinePercent);
    Person person(const QString &last, QChar gender, int age);
    QString email(const Person &p);
    QDate daysAgo(int days) const { return m_options.today.addDays(-days); }
    qint64 dollars(int lo, int hi) { return qint64(between(lo, hi)) * 100; }
    qint64 dollarsAndCents(int lo, int hi)
    {
        const qint64 whole = dollars(lo, hi);
        return whole + between(0, 99);
    }

    bool insertZips();
    bool updateOrganization();
    bool insertHousehold();
    bool insertFamily(qint64 clientId, const Person &head, bool married, int members);
    bool insertVisits(qint64 clientId, int householdSize);
    bool insertPayments(qint64 clientId);
    bool insertIncomeAndExpenses(qint64 clientId, bool employed);
    bool insertVolunteer();
    bool dropIndexes();
    bool createIndexes();

    QSqlDatabase m_db;
    Options m_options;
    QRandomGenerator m_rng;
    QString m_error;

    QStringList m_surnames, m_male, m_female, m_streets, m_employers, m_affiliations;
    QStringList m_comments, m_diets, m_medical, m_visitComments, m_volunteerComments;
    QString m_state;
    QStringList m_zips, m_cities;
    QSet<qint32> m_ssns;
    QStringList m_indexes;   // dropped during the run, rebuilt at its end

    Lookup m_marital, m_ethnic, m_education, m_housing, m_religion, m_assistance;
    Lookup m_relationships, m_serviceTypes, m_paymentTypes, m_incomeSources, m_expenseCategories;

    QSqlQuery m_client{m_db}, m_family{m_db}, m_visit{m_db}, m_payment{m_db};
    QSqlQuery m_income{m_db}, m_expense{m_db}, m_volunteer{m_db};
};

bool Generator::loadLookup(const char *table, const char *column, Lookup *lookup)
{
    const LookupTables::LookupTable *t = LookupTables::referencedBy(QLatin1String(table), QLatin1String(column));
    if (!t) {
        m_error = QStringLiteral("No lookup table is referenced by %1.%2.").arg(QLatin1String(table), QLatin1String(column));
        return false;
    }
    QSqlQuery query(m_db);
    query.setForwardOnly(true);
    const QString sql = QStringLiteral("SELECT %1, %2 FROM %3 ORDER BY %1")
                            .arg(SqlText::id(QLatin1String(t->keyColumn)), SqlText::id(QLatin1String(t->descriptionColumn)),
                                 SqlText::id(t->name()));
    if (!query.exec(sql))
        return fail(QStringLiteral("Could not read %1").arg(t->name()), query);
    while (query.next()) {
        lookup->ids.append(query.value(0).toInt());
        lookup->descriptions.append(query.value(1).toString());
    }
    if (lookup->ids.isEmpty()) {
        m_error = QStringLiteral("The lookup table %1 is empty.").arg(t->name());
        return false;
    }
    return true;
}

QString Generator::ssn()
{
    for (;;) {
        int area = between(1, 899);
        if (area == 666)
            area = 667;
        const int group = between(1, 99);
        const int serial = between(1, 9999);
        const qint32 value = area * 1000000 + group * 10000 + serial;
        if (!m_ssns.contains(value)) {
            m_ssns.insert(value);
            return QStringLiteral("%1").arg(value, 9, 10, QLatin1Char('0'));
        }
    }
}

QString Generator::phone()
{
    const qint64 area = percent(90) ? 937 : 513;
    const qint64 exchange = between(200, 999);
    const qint64 line = between(0, 9999);
    return QString::number(area * 10000000 + exchange * 10000 + line);
}

QString Generator::driversLicense()
{
    const QChar a(u'A' + between(0, 25));
    const QChar b(u'A' + between(0, 25));
    const int digits = between(0, 999999);
    return QString(a) + b + QStringLiteral("%1").arg(digits, 6, 10, QLatin1Char('0'));
}

QString Generator::middleInitial()
{
    static const char letters[] = "AAABBCCDDEEFGGHJJJKLLLMMMNPRRSSTW";
    if (!percent(80))
        return {};
    return QString(QChar::fromLatin1(letters[between(0, int(sizeof letters) - 2)]));
}

QString Generator::street()
{
    const int number = percent(70) ? between(100, 4999) : between(10, 99);
    QString s = QString::number(number) + QLatin1Char(' ') + pick(m_streets);
    if (percent(20)) {
        const int unit = between(1, 4);
        const QChar letter(u'A' + between(0, 5));
        s += QStringLiteral(" Apt %1%2").arg(unit).arg(letter);
    }
    return s;
}

QString Generator::birthDate(int age)
{
    const int days = between(0, 364);
    return iso(m_options.today.addYears(-age).addDays(-days));
}

QString Generator::memo(const QStringList &lines, int twoLinePercent)
{
    QString text = pick(lines);
    if (percent(twoLinePercent)) {
        const QString &second = pick(lines);
        if (second != text)
            text += QLatin1Char('\n') + second;
    }
    return text;
}

Person Generator::person(const QString &last, QChar gender, int age)
{
    Person p;
    p.last = last.isEmpty() ? pick(m_surnames) : last;
    p.gender = gender;
    p.first = pick(gender == u'F' ? m_female : m_male);
    p.age = age;
    return p;
}

QString Generator::email(const Person &p)
{
    // Plain ASCII letters only: "renée.o'brien" would not be a usable address.
    auto clean = [](const QString &name) {
        QString out;
        for (QChar c : name.normalized(QString::NormalizationForm_D)) {
            if (c.isLetter() && c.unicode() < 128)
                out += c.toLower();
        }
        return out;
    };
    return clean(p.first) + QLatin1Char('.') + clean(p.last) + QStringLiteral("@example.org");
}

bool Generator::insertZips()
{
    QSqlQuery existing(m_db), insert(m_db);
    if (!prepare(existing, QStringLiteral("SELECT 1 FROM ZipCode WHERE ZipCode = ?"))
        || !prepare(insert, QStringLiteral("INSERT INTO ZipCode (ZipCode, City, State) VALUES (?, ?, ?)")))
        return false;
    for (const ZipCity &z : kZips) {
        m_zips.append(QString::fromLatin1(z.zip));
        m_cities.append(QString::fromLatin1(z.city));
        existing.addBindValue(m_zips.last());
        if (!existing.exec())
            return fail(QStringLiteral("Could not read ZipCode"), existing);
        const bool present = existing.next();
        existing.finish();
        if (!present && !exec(insert, {m_zips.last(), m_cities.last(), m_state}, "ZipCode"))
            return false;
    }
    return true;
}

bool Generator::updateOrganization()
{
    const QVariantList values = {QStringLiteral("Riverside Community Food Pantry"), QStringLiteral("1235 Harshman Rd"),
                                 m_cities.at(kRiversideZip), m_state, m_zips.at(kRiversideZip),
                                 QStringLiteral("9375550142")};
    QSqlQuery query(m_db);
    if (!prepare(query, QStringLiteral("UPDATE Organization SET OrganizationName = ?, OrganizationAddress = ?, "
                                       "OrganizationCity = ?, OrganizationState = ?, OrganizationZip = ?, "
                                       "OrganizationPhone = ?")))
        return false;
    for (const QVariant &v : values)
        query.addBindValue(v);
    if (!query.exec())
        return fail(QStringLiteral("Could not update Organization"), query);
    if (query.numRowsAffected() > 0)
        return true;
    // A database without the single settings row gets one.
    if (!prepare(query, QStringLiteral("INSERT INTO Organization (OrganizationName, OrganizationAddress, "
                                       "OrganizationCity, OrganizationState, OrganizationZip, OrganizationPhone) "
                                       "VALUES (?, ?, ?, ?, ?, ?)")))
        return false;
    for (const QVariant &v : values)
        query.addBindValue(v);
    return query.exec() || fail(QStringLiteral("Could not add the Organization row"), query);
}

bool Generator::insertHousehold()
{
    const QVariant null;
    const QChar gender = percent(58) ? u'F' : u'M';
    int age = 18 + between(0, 36);
    age += between(0, 36);   // peaks in the fifties
    const Person head = person({}, gender, age);
    const QString middle = middleInitial();
    const QVariant ssnValue = percent(97) ? QVariant(ssn()) : null;
    const QVariant dln = percent(70) ? QVariant(driversLicense()) : null;
    const QString address = street();
    const int zip = between(0, int(m_zips.size()) - 1);
    const QVariant home = percent(70) ? QVariant(phone()) : null;
    const QVariant mobile = percent(80) ? QVariant(phone()) : null;
    const QVariant birth = percent(98) ? QVariant(birthDate(age)) : null;
    const int maritalId = pickId(m_marital);
    const bool married = maritalId == m_marital.find(QStringLiteral("Married"));
    const int ethnicId = pickId(m_ethnic);
    const int educationId = pickId(m_education);
    const int housingId = pickId(m_housing);
    const QVariant religionId = percent(85) ? QVariant(pickId(m_religion)) : null;
    const int assistanceId = pickId(m_assistance);

    const bool employed = age < 70 && percent(48);
    QVariant work, employer, employerAddress, employerCity, employerState, employerZip, years, months;
    if (employed) {
        employer = pick(m_employers);
        employerAddress = street();
        const int ez = between(0, int(m_zips.size()) - 1);
        employerCity = m_cities.at(ez);
        employerState = m_state;
        employerZip = m_zips.at(ez);
        years = between(0, std::min(age - 17, 25));
        months = between(0, 11);
        if (percent(50))
            work = phone();
    }
    QVariant former;
    if (percent(10)) {
        const QString formerStreet = street();
        const int formerZip = between(0, int(m_zips.size()) - 1);
        former = formerStreet + QLatin1Char('\n') + m_cities.at(formerZip) + QStringLiteral(", OH ")
            + m_zips.at(formerZip);
    }
    const QVariant diet = percent(8) ? QVariant(memo(m_diets, 25)) : null;
    const QVariant medical = percent(12) ? QVariant(memo(m_medical, 30)) : null;
    const QVariant relatives = permille(5) ? QVariant(QStringLiteral("Looking for a brother, last heard of in Columbus."))
                                           : null;
    const bool femaContacted = percent(2);
    const bool femaEligible = femaContacted && percent(50);
    const QVariant femaComments = femaContacted ? QVariant(QStringLiteral("Storm damage to the house; applied for assistance."))
                                                : null;
    const QVariant comments = percent(15) ? QVariant(memo(m_comments, 30)) : null;

    if (!exec(m_client,
              {head.last, head.first, middle.isEmpty() ? null : QVariant(middle), ssnValue, dln, address,
               m_cities.at(zip), m_state, m_zips.at(zip), home, work, mobile, birth, QString(head.gender), maritalId,
               ethnicId, educationId, housingId, religionId, assistanceId, employer, employerAddress, employerCity,
               employerState, employerZip, years, months, former, diet, medical, relatives, int(femaContacted),
               int(femaEligible), femaComments, comments},
              "Client"))
        return false;
    const qint64 clientId = m_client.lastInsertId().toLongLong();

    static const int familyWeights[] = {30, 22, 20, 14, 8, 4, 2};   // 0..6 members, about 1.7 on average
    int roll = between(0, 99), members = 0;
    while (roll >= familyWeights[members]) {
        roll -= familyWeights[members];
        ++members;
    }
    return insertFamily(clientId, head, married, members)
        && insertVisits(clientId, members + 1)
        && (!percent(25) || insertPayments(clientId))
        && insertIncomeAndExpenses(clientId, employed);
}

bool Generator::insertFamily(qint64 clientId, const Person &head, bool married, int members)
{
    const QVariant null;
    const QChar other = head.gender == u'F' ? u'M' : u'F';
    bool hasSpouse = false;
    for (int i = 0; i < members; ++i) {
        int relationship = 0;
        Person p;
        bool child = false;
        if (i == 0 && ((married && percent(90)) || (!married && percent(12)))) {
            relationship = married ? idOr(m_relationships, "Spouse") : idOr(m_relationships, "Partner");
            const QChar g = percent(95) ? other : head.gender;
            const int age = std::max(18, head.age + between(-8, 8));
            p = person(married && percent(80) ? head.last : QString(), g, age);
            hasSpouse = true;
        } else {
            const QChar g = percent(50) ? u'F' : u'M';
            const int kind = between(0, 99);
            const int maxChild = std::min(head.age - 16, 30);
            if (head.age >= 56 && kind < 40) {
                relationship = idOr(m_relationships, "Grandchild");
                const int age = between(0, std::min(head.age - 36, 20));
                p = person(percent(70) ? head.last : QString(), g, age);
                child = true;
            } else if (maxChild >= 0 && kind < 85) {
                relationship = g == u'F' ? idOr(m_relationships, "Daughter") : idOr(m_relationships, "Son");
                // Parents were 16 to 45 when their children were born; most children are minors.
                const int youngest = std::max(0, head.age - 45);
                const int oldest = maxChild > 17 && youngest <= 17 && percent(75) ? 17 : maxChild;
                const int age = between(std::min(youngest, oldest), oldest);
                p = person(percent(85) ? head.last : QString(), g, age);
                child = true;
            } else if (head.age < 60 && kind < 92) {
                relationship = idOr(m_relationships, "Parent");
                const int age = std::min(95, head.age + between(18, 35));
                p = person(percent(60) ? head.last : QString(), g, age);
            } else if (kind < 97) {
                relationship = idOr(m_relationships, "Sibling");
                const int age = std::max(16, head.age + between(-10, 10));
                p = person(percent(50) ? head.last : QString(), g, age);
            } else {
                relationship = percent(50) ? idOr(m_relationships, "Other relative") : idOr(m_relationships, "Other");
                p = person({}, g, between(5, 80));
            }
            // Only the first slot holds a spouse or partner; a lookup fallback must not add a second.
            if (hasSpouse && (relationship == m_relationships.find(QStringLiteral("Spouse"))
                              || relationship == m_relationships.find(QStringLiteral("Partner"))))
                relationship = idOr(m_relationships, "Other relative");
        }
        const bool adult = p.age >= 18;
        const QString middle = middleInitial();
        const QVariant ssnValue = percent(adult ? 70 : 50) ? QVariant(ssn()) : null;
        const QVariant dln = adult && percent(50) ? QVariant(driversLicense()) : null;
        const QVariant birth = permille(990) ? QVariant(birthDate(p.age)) : null;
        const QVariant ethnic = percent(90) ? QVariant(pickId(m_ethnic)) : null;
        const QVariant education = p.age >= 16 && percent(70) ? QVariant(pickId(m_education)) : null;
        const QVariant mobile = adult && percent(50) ? QVariant(phone()) : null;
        QVariant employer, employerCity, employerState, employerZip, work;
        if (adult && p.age < 70 && percent(30)) {
            employer = pick(m_employers);
            const int ez = between(0, int(m_zips.size()) - 1);
            employerCity = m_cities.at(ez);
            employerState = m_state;
            employerZip = m_zips.at(ez);
            if (percent(40))
                work = phone();
        }
        const QVariant comments = child && permille(30) ? QVariant(QStringLiteral("Attends Head Start.")) : null;
        if (!exec(m_family,
                  {clientId, relationship, p.last, p.first, middle.isEmpty() ? null : QVariant(middle), ssnValue, dln,
                   birth, QString(p.gender), ethnic, education, work, mobile, employer, employerCity, employerState,
                   employerZip, comments},
                  "Family"))
            return false;
    }
    return true;
}

bool Generator::insertVisits(qint64 clientId, int householdSize)
{
    // Many households come once or twice, regulars about monthly.
    if (percent(10))
        return true;
    const double u = m_rng.generateDouble();
    const int wanted = std::min(24, 1 + int(25.0 * u * u));
    const int firstVisit = between(0, 729);   // days before today
    QList<int> offsets;
    offsets.reserve(wanted);
    for (int i = 0; i < wanted; ++i)
        offsets.append(between(0, firstVisit));
    std::sort(offsets.begin(), offsets.end(), std::greater<int>());
    offsets.erase(std::unique(offsets.begin(), offsets.end()), offsets.end());

    const int regular = idOr(m_serviceTypes, "Regular grocery visit");
    const int holiday = m_serviceTypes.find(QStringLiteral("Holiday basket"));
    const QVariant null;
    for (int offset : offsets) {
        const QDate date = daysAgo(offset);
        int type = percent(70) ? regular : pickId(m_serviceTypes);
        if (holiday && (date.month() == 11 || date.month() == 12) && percent(30))
            type = holiday;
        else if (type == holiday && date.month() != 11 && date.month() != 12)
            type = regular;
        const int spread = between(0, 2);
        const int bags = std::clamp(1 + householdSize / 2 + spread - 1, 1, 6);
        const QVariant comments = percent(4) ? QVariant(pick(m_visitComments)) : null;
        if (!exec(m_visit, {clientId, iso(date), type, bags, comments}, "FoodService"))
            return false;
    }
    return true;
}

bool Generator::insertPayments(qint64 clientId)
{
    const QVariant null;
    const int n = between(1, 4);
    QList<int> offsets;
    for (int i = 0; i < n; ++i)
        offsets.append(between(0, 729));
    std::sort(offsets.begin(), offsets.end(), std::greater<int>());
    for (int offset : offsets) {
        const int type = pickId(m_paymentTypes);
        const QString description = m_paymentTypes.descriptions.at(m_paymentTypes.ids.indexOf(type));
        qint64 requested;
        QString note;
        if (description == QLatin1String("Rent")) {
            requested = dollars(200, 900);
            note = QStringLiteral("Paid directly to the landlord");
        } else if (description == QLatin1String("Utilities")) {
            requested = dollarsAndCents(50, 350);
            note = QStringLiteral("Shutoff notice on file; check sent to AES Ohio");
        } else if (description == QLatin1String("Prescription")) {
            requested = dollarsAndCents(10, 150);
            note = QStringLiteral("Filled at the CVS on Wayne Ave");
        } else if (description == QLatin1String("Transportation")) {
            requested = dollars(10, 80);
            note = QStringLiteral("RTA bus passes");
        } else {
            requested = dollars(20, 250);
            note = QStringLiteral("Balance covered by St. Vincent de Paul");
        }
        qint64 paid;
        const int outcome = between(0, 99);
        if (outcome < 15)
            paid = 0;
        else if (outcome < 65)
            paid = requested;
        else
            paid = std::min(requested, dollars(5, std::max(5, int(requested / 100))));
        const QVariant comments = percent(20) ? QVariant(note) : null;
        if (!exec(m_payment, {clientId, iso(daysAgo(offset)), type, requested, paid, comments}, "Payments"))
            return false;
    }
    return true;
}

bool Generator::insertIncomeAndExpenses(qint64 clientId, bool employed)
{
    // Monthly amounts in whole dollars, by the kind of income or bill.
    struct Range { const char *description; int lo, hi; };
    static const Range incomeRanges[] = {
        {"Employment", 800, 3200}, {"Social Security", 900, 2200}, {"SSI / Disability", 600, 950},
        {"Unemployment", 400, 1800}, {"Child support", 100, 600}, {"Pension", 200, 1500},
        {"SNAP", 100, 900}, {"TANF", 200, 600},
    };
    static const Range expenseRanges[] = {
        {"Rent or mortgage", 550, 1600}, {"Utilities", 80, 350}, {"Food", 200, 800}, {"Transportation", 50, 400},
        {"Medical", 20, 300}, {"Child care", 200, 1000}, {"Insurance", 50, 250},
    };
    auto amount = [this](const Lookup &lookup, int id, const Range *ranges, int n) {
        const QString description = lookup.descriptions.at(lookup.ids.indexOf(id));
        for (int i = 0; i < n; ++i) {
            if (description == QLatin1String(ranges[i].description))
                return dollars(ranges[i].lo, ranges[i].hi);
        }
        return dollars(20, 300);
    };
    auto distinct = [this](const Lookup &lookup, int n) {
        QList<int> ids = lookup.ids;
        for (qsizetype i = ids.size() - 1; i > 0; --i)
            std::swap(ids[i], ids[between(0, int(i))]);
        return ids.mid(0, std::min<qsizetype>(n, ids.size()));
    };

    int incomes = between(0, 3);
    QList<int> sources = distinct(m_incomeSources, incomes);
    const int employment = m_incomeSources.find(QStringLiteral("Employment"));
    if (employed && employment && !sources.contains(employment)) {
        if (sources.isEmpty())
            sources.append(employment);
        else
            sources[0] = employment;
    }
    for (int id : sources) {
        if (!exec(m_income, {clientId, id, amount(m_incomeSources, id, incomeRanges, count(incomeRanges))}, "Income"))
            return false;
    }
    const int expenses = between(0, 4);
    for (int id : distinct(m_expenseCategories, expenses)) {
        if (!exec(m_expense, {clientId, id, amount(m_expenseCategories, id, expenseRanges, count(expenseRanges))},
                  "Expenses"))
            return false;
    }
    return true;
}

bool Generator::insertVolunteer()
{
    const QVariant null;
    const QChar gender = percent(60) ? u'F' : u'M';
    const Person p = person({}, gender, 0);
    const QString middle = middleInitial();
    const int zip = between(0, int(m_zips.size()) - 1);
    const QString address = street();
    const QVariant home = percent(60) ? QVariant(phone()) : null;
    const QVariant work = percent(25) ? QVariant(phone()) : null;
    const QVariant mobile = percent(85) ? QVariant(phone()) : null;
    const QVariant mail = percent(85) ? QVariant(email(p)) : null;
    const QVariant affiliation = percent(80) ? QVariant(pick(m_affiliations)) : null;
    const QString contactLast = percent(60) ? p.last : QString();
    const QChar contactGender = percent(50) ? u'F' : u'M';
    const Person contact = person(contactLast, contactGender, 0);
    const QString contactPhone = phone();
    const int party = percent(70) ? 1 : between(2, 4);
    const QVariant comments = percent(30) ? QVariant(pick(m_volunteerComments)) : null;
    return exec(m_volunteer,
                {p.last, p.first, middle.isEmpty() ? null : QVariant(middle), address, m_cities.at(zip), m_state,
                 m_zips.at(zip), home, work, mobile, mail, affiliation, contact.first + QLatin1Char(' ') + contact.last,
                 contactPhone, party, comments},
                "Volunteer");
}

bool Generator::run()
{
    if (!loadLookup("Client", "MaritalStatusID", &m_marital) || !loadLookup("Client", "EthnicOriginID", &m_ethnic)
        || !loadLookup("Client", "EducationLevelID", &m_education) || !loadLookup("Client", "HousingID", &m_housing)
        || !loadLookup("Client", "ReligiousPreferenceID", &m_religion) || !loadLookup("Client", "OtherAssistanceID", &m_assistance)
        || !loadLookup("Family", "RelationshipID", &m_relationships)
        || !loadLookup("FoodService", "FoodServiceTypeID", &m_serviceTypes)
        || !loadLookup("Payments", "PaymentsTypeID", &m_paymentTypes) || !loadLookup("Income", "IncomeSourceID", &m_incomeSources)
        || !loadLookup("Expenses", "ExpenseCategoryID", &m_expenseCategories))
        return false;

    // SSNs already on file stay unique too.
    qint64 existingClients = 0;
    {
        QSqlQuery existing(m_db);
        existing.setForwardOnly(true);
        if (!existing.exec(QStringLiteral("SELECT SocialSecurityNumber FROM Client WHERE SocialSecurityNumber IS NOT NULL "
                                          "UNION SELECT SocialSecurityNumber FROM Family WHERE SocialSecurityNumber IS NOT NULL")))
            return fail(QStringLiteral("Could not read existing SSNs"), existing);
        while (existing.next()) {
            bool ok = false;
            const int value = existing.value(0).toString().toInt(&ok);
            if (ok)
                m_ssns.insert(value);
        }
        if (!existing.exec(QStringLiteral("SELECT COUNT(*) FROM Client")) || !existing.next())
            return fail(QStringLiteral("Could not count clients"), existing);
        existingClients = existing.value(0).toLongLong();
    }
    // Filling an index row by row costs far more than building it once at the end, unless
    // the tables already hold more than this run adds.
    if (m_options.clients >= existingClients && !dropIndexes())
        return false;

    if (!prepare(m_client, QStringLiteral(
            "INSERT INTO Client (LastName, FirstName, MiddleInitial, SocialSecurityNumber, DriversLicenseNumber, "
            "Address, City, State, ZipCode, HomePhone, WorkPhone, MobilePhone, BirthDate, Gender, MaritalStatusID, "
            "EthnicOriginID, EducationLevelID, HousingID, ReligiousPreferenceID, OtherAssistanceID, EmployerName, "
            "EmployerAddress, EmployerCity, EmployerState, EmployerZip, EmployerDurationYears, "
            "EmployerDurationMonths, FormerAddress, DietaryRequirements, MedicalProblems, RelativesSearchingFor, "
            "FEMAContacted, FEMAEligible, FEMAComments, Comments) "
            "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, "
            "?, ?, ?, ?)"))
        || !prepare(m_family, QStringLiteral(
            "INSERT INTO Family (ClientID, RelationshipID, LastName, FirstName, MiddleInitial, SocialSecurityNumber, "
            "DriversLicenseNumber, BirthDate, Gender, EthnicOriginID, EducationLevelID, WorkPhone, MobilePhone, "
            "EmployerName, EmployerCity, EmployerState, EmployerZip, Comments) "
            "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)"))
        || !prepare(m_visit, QStringLiteral("INSERT INTO FoodService (ClientID, FoodServiceDate, FoodServiceTypeID, "
                                            "NumberOfBags, Comments) VALUES (?, ?, ?, ?, ?)"))
        || !prepare(m_payment, QStringLiteral("INSERT INTO Payments (ClientID, PaymentDate, PaymentsTypeID, "
                                              "AmountRequested, AmountPaid, Comments) VALUES (?, ?, ?, ?, ?, ?)"))
        || !prepare(m_income, QStringLiteral("INSERT INTO Income (ClientID, IncomeSourceID, Amount) VALUES (?, ?, ?)"))
        || !prepare(m_expense, QStringLiteral("INSERT INTO Expenses (ClientID, ExpenseCategoryID, Amount) "
                                              "VALUES (?, ?, ?)"))
        || !prepare(m_volunteer, QStringLiteral(
            "INSERT INTO Volunteer (LastName, FirstName, MiddleInitial, Address, City, State, ZipCode, HomePhone, "
            "WorkPhone, MobilePhone, EMailAddress, Affiliation, EmergencyContact, EmergencyContactPhone, "
            "NumberInParty, Comments) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)")))
        return false;

    if (!insertZips() || !updateOrganization())
        return false;
    for (int i = 0; i < m_options.clients; ++i) {
        if (!insertHousehold())
            return false;
    }
    const int volunteers = m_options.volunteers >= 0 ? m_options.volunteers : std::max(5, m_options.clients / 50);
    for (int i = 0; i < volunteers; ++i) {
        if (!insertVolunteer())
            return false;
    }
    return createIndexes();
}

bool Generator::dropIndexes()
{
    QSqlQuery query(m_db);
    query.setForwardOnly(true);
    if (!query.exec(QStringLiteral("SELECT name, sql FROM sqlite_master WHERE type = 'index' AND sql IS NOT NULL "
                                   "AND tbl_name IN ('Client', 'Family', 'FoodService', 'Payments', 'Income', "
                                   "'Expenses') ORDER BY rowid")))
        return fail(QStringLiteral("Could not list the indexes"), query);
    QStringList names;
    while (query.next()) {
        names.append(query.value(0).toString());
        m_indexes.append(query.value(1).toString());
    }
    query.finish();
    for (const QString &name : std::as_const(names)) {
        QString quoted = name;
        quoted.replace(QLatin1Char('"'), QStringLiteral("\"\""));
        if (!query.exec(QStringLiteral("DROP INDEX \"%1\"").arg(quoted)))
            return fail(QStringLiteral("Could not drop index %1").arg(name), query);
    }
    return true;
}

bool Generator::createIndexes()
{
    QSqlQuery query(m_db);
    for (const QString &sql : std::as_const(m_indexes)) {
        if (!query.exec(sql))
            return fail(QStringLiteral("Could not rebuild an index"), query);
    }
    m_indexes.clear();
    return true;
}

} // namespace

bool Generate(QSqlDatabase db, const Options &options, QString *error)
{
    auto report = [error](const QString &text) {
        if (error)
            *error = text;
        return false;
    };
    if (!db.isOpen())
        return report(QStringLiteral("The database is not open."));
    if (!options.today.isValid())
        return report(QStringLiteral("The date for today is not valid."));
    // Every index of a large run stays in memory until the commit; the old size comes back afterwards.
    QVariant cacheSize;
    {
        QSqlQuery pragma(db);
        if (pragma.exec(QStringLiteral("PRAGMA cache_size")) && pragma.next()) {
            cacheSize = pragma.value(0);
            pragma.finish();
            pragma.exec(QStringLiteral("PRAGMA cache_size = -262144"));
        }
    }
    auto restoreCacheSize = qScopeGuard([&db, &cacheSize] {
        if (cacheSize.isValid())
            QSqlQuery(db).exec(QStringLiteral("PRAGMA cache_size = %1").arg(cacheSize.toLongLong()));
    });

    Transaction transaction(db);
    if (!transaction.active())
        return report(QStringLiteral("Could not start a transaction: %1").arg(transaction.error()));

    bool ok;
    QString message;
    {
        Generator generator(db, options);
        ok = generator.run();
        message = generator.error();
    }   // the prepared statements are gone before commit or rollback
    if (!ok) {
        transaction.rollback();
        return report(message);
    }
    if (!transaction.commit())
        return report(QStringLiteral("Could not commit: %1").arg(transaction.error()));
    return true;
}

} // namespace DemoData
