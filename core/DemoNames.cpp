#include "DemoGenerator.h"

// Greater Dayton's places and common names, and the people made from them.
namespace DemoData::detail {
namespace {

// Greater Dayton, Ohio: the pantry's service area.
const char *const kState = "OH";
struct ZipCity
{
    const char *zip;
    const char *city;
};
const ZipCity kZips[] = {
    {"45402", "Dayton"},      {"45403", "Dayton"},      {"45404", "Dayton"},          {"45405", "Dayton"},        {"45406", "Dayton"},
    {"45409", "Dayton"},      {"45410", "Dayton"},      {"45414", "Dayton"},          {"45415", "Dayton"},        {"45416", "Dayton"},
    {"45417", "Dayton"},      {"45419", "Oakwood"},     {"45420", "Kettering"},       {"45424", "Huber Heights"}, {"45426", "Trotwood"},
    {"45429", "Kettering"},   {"45430", "Beavercreek"}, {"45431", "Riverside"},       {"45432", "Beavercreek"},   {"45434", "Beavercreek"},
    {"45439", "Moraine"},     {"45440", "Kettering"},   {"45449", "West Carrollton"}, {"45458", "Centerville"},   {"45459", "Centerville"},
    {"45305", "Bellbrook"},   {"45309", "Brookville"},  {"45315", "Clayton"},         {"45322", "Englewood"},     {"45324", "Fairborn"},
    {"45327", "Germantown"},  {"45342", "Miamisburg"},  {"45345", "New Lebanon"},     {"45371", "Tipp City"},     {"45373", "Troy"},
    {"45377", "Vandalia"},    {"45385", "Xenia"},       {"45387", "Yellow Springs"},  {"45066", "Springboro"},    {"45068", "Waynesville"},
    {"45502", "Springfield"}, {"45503", "Springfield"},
};
const int kRiversideZip = 17;

const char *const kSurnames[] = {
    "Smith",     "Johnson",   "Williams", "Brown",   "Jones",      "Garcia",   "Miller",    "Davis",     "Rodriguez",  "Martinez",
    "Hernandez", "Lopez",     "Gonzalez", "Wilson",  "Anderson",   "Thomas",   "Taylor",    "Moore",     "Jackson",    "Martin",
    "Lee",       "Perez",     "Thompson", "White",   "Harris",     "Sanchez",  "Clark",     "Ramirez",   "Lewis",      "Robinson",
    "Walker",    "Young",     "Allen",    "King",    "Wright",     "Scott",    "Torres",    "Nguyen",    "Hill",       "Flores",
    "Green",     "Adams",     "Nelson",   "Baker",   "Hall",       "Rivera",   "Campbell",  "Mitchell",  "Carter",     "Roberts",
    "Gomez",     "Phillips",  "Evans",    "Turner",  "Diaz",       "Parker",   "Cruz",      "Edwards",   "Collins",    "Reyes",
    "Stewart",   "Morris",    "Morales",  "Murphy",  "Cook",       "Rogers",   "Gutierrez", "Ortiz",     "Morgan",     "Cooper",
    "Peterson",  "Bailey",    "Reed",     "Kelly",   "Howard",     "Ramos",    "Kim",       "Cox",       "Ward",       "Richardson",
    "Watson",    "Brooks",    "Chavez",   "Wood",    "James",      "Bennett",  "Gray",      "Mendoza",   "Ruiz",       "Hughes",
    "Price",     "Alvarez",   "Castillo", "Sanders", "Patel",      "Myers",    "Long",      "Ross",      "Foster",     "Jimenez",
    "Powell",    "Jenkins",   "Perry",    "Russell", "Sullivan",   "Bell",     "Coleman",   "Butler",    "Henderson",  "Barnes",
    "Gonzales",  "Fisher",    "Vasquez",  "Simmons", "Romero",     "Jordan",   "Patterson", "Alexander", "Hamilton",   "Graham",
    "Reynolds",  "Griffin",   "Wallace",  "Moreno",  "West",       "Cole",     "Hayes",     "Bryant",    "Herrera",    "Gibson",
    "Ellis",     "Tran",      "Medina",   "Aguilar", "Stevens",    "Murray",   "Ford",      "Castro",    "Marshall",   "Owens",
    "Harrison",  "Fernandez", "McDonald", "Woods",   "Washington", "Kennedy",  "Wells",     "Vargas",    "Henry",      "Chen",
    "Freeman",   "Webb",      "Tucker",   "Guzman",  "Burns",      "Crawford", "Olson",     "Simpson",   "Porter",     "Hunter",
    "Gordon",    "Mendez",    "Silva",    "Shaw",    "Snyder",     "Mason",    "Dixon",     "Muñoz",     "Hunt",       "Hicks",
    "Holmes",    "Palmer",    "Wagner",   "Black",   "Robertson",  "Boyd",     "Rose",      "Stone",     "Salazar",    "Fox",
    "Warren",    "Mills",     "Meyer",    "Rice",    "Schmidt",    "Garza",    "Daniels",   "Ferguson",  "Nichols",    "Stephens",
    "Soto",      "Weaver",    "Ryan",     "Gardner", "Payne",      "Grant",    "Dunn",      "Spencer",   "Hawkins",    "Arnold",
    "Pierce",    "Hansen",    "Peters",   "Santos",  "Hart",       "Bradley",  "Knight",    "Elliott",   "Cunningham", "Duncan",
    "O'Brien",   "D'Angelo",  "O'Connor", "Nguyễn",  "Peña",       "Hoffman",  "Schneider", "Kowalski",  "Jovanovic",  "Dubois",
};

const char *const kMaleNames[] = {
    "James",    "Robert", "John",     "Michael",   "David",     "William", "Richard", "Joseph",  "Thomas",  "Christopher",
    "Charles",  "Daniel", "Matthew",  "Anthony",   "Mark",      "Donald",  "Steven",  "Andrew",  "Paul",    "Joshua",
    "Kenneth",  "Kevin",  "Brian",    "George",    "Timothy",   "Ronald",  "Jason",   "Edward",  "Jeffrey", "Ryan",
    "Jacob",    "Gary",   "Nicholas", "Eric",      "Jonathan",  "Stephen", "Larry",   "Justin",  "Scott",   "Brandon",
    "Benjamin", "Samuel", "Gregory",  "Alexander", "Patrick",   "Frank",   "Raymond", "Jack",    "Dennis",  "Jerry",
    "Tyler",    "Aaron",  "Jose",     "Adam",      "Nathan",    "Henry",   "Zachary", "Douglas", "Peter",   "Kyle",
    "Noah",     "Ethan",  "Jeremy",   "Walter",    "Christian", "Keith",   "Roger",   "Terry",   "Austin",  "Sean",
    "Carl",     "Harold", "Dylan",    "Arthur",    "Jesse",     "Bryan",   "Gabriel", "Logan",   "Juan",    "Elijah",
};

const char *const kFemaleNames[] = {
    "Mary",      "Patricia",  "Jennifer", "Linda",   "Elizabeth", "Barbara", "Susan",     "Jessica",    "Sarah",     "Karen",
    "Lisa",      "Nancy",     "Betty",    "Sandra",  "Margaret",  "Ashley",  "Kimberly",  "Emily",      "Donna",     "Michelle",
    "Carol",     "Amanda",    "Melissa",  "Deborah", "Stephanie", "Dorothy", "Rebecca",   "Sharon",     "Laura",     "Cynthia",
    "Amy",       "Kathleen",  "Angela",   "Shirley", "Brenda",    "Emma",    "Anna",      "Pamela",     "Nicole",    "Samantha",
    "Katherine", "Christine", "Helen",    "Debra",   "Rachel",    "Carolyn", "Janet",     "Maria",      "Catherine", "Heather",
    "Diane",     "Olivia",    "Julie",    "Joyce",   "Victoria",  "Ruth",    "Virginia",  "Lauren",     "Kelly",     "Christina",
    "Joan",      "Evelyn",    "Judith",   "Andrea",  "Hannah",    "Megan",   "Cheryl",    "Jacqueline", "Martha",    "Madison",
    "Teresa",    "Gloria",    "Janice",   "Kathryn", "Sophia",    "Renée",   "Guadalupe", "Tamika",     "Latoya",    "Ava",
};

const char *const kStreets[] = {
    "Salem Ave",     "S Main St",    "Brown St",         "Wayne Ave",       "Far Hills Ave", "Linden Ave",     "Smithville Rd",
    "Troy St",       "Keowee St",    "Woodman Dr",       "Wilmington Pike", "Patterson Rd",  "Shroyer Rd",     "Stroop Rd",
    "Dorothy Ln",    "Hoover Ave",   "Gettysburg Ave",   "Germantown St",   "Xenia Ave",     "Springfield St", "Airway Rd",
    "Harshman Rd",   "Needmore Rd",  "Siebenthaler Ave", "Philadelphia Dr", "Catalpa Dr",    "Forest Ave",     "Grand Ave",
    "Superior Ave",  "Oakridge Dr",  "Huffman Ave",      "Watervliet Ave",  "Burkhardt Rd",  "Maple St",       "Oak St",
    "Elm St",        "Cedar Ln",     "Pine St",          "Walnut St",       "Chestnut St",   "Park Ave",       "Lincoln Ave",
    "Washington St", "Jefferson St", "Madison Ave",      "Franklin St",     "Church St",     "Mill St",        "High St",
    "Market St",     "Spring St",    "Ridge Rd",         "Hillcrest Dr",    "Meadow Ln",     "Sunset Dr",      "Valley St",
    "Lakeview Dr",   "Riverside Dr", "Cherry St",        "Highland Ave",    "Broad St",      "Kings Hwy",
};

const char *const kEmployers[] = {
    "Kroger",
    "Meijer",
    "Walmart Supercenter",
    "Premier Health",
    "Kettering Health",
    "Dayton Children's Hospital",
    "Dayton Public Schools",
    "University of Dayton",
    "Wright State University",
    "CareSource",
    "Speedway",
    "Dollar General",
    "McDonald's",
    "Wendy's",
    "Bob Evans",
    "Home Depot",
    "Lowe's",
    "Target",
    "Amazon Fulfillment Center",
    "Fuyao Glass America",
    "City of Dayton",
    "Montgomery County",
    "Greater Dayton RTA",
    "Staffmark",
    "Kelly Services",
    "Cracker Barrel",
    "Goodwill Easterseals",
    "Miami Valley Hospital",
    "Sunrise Senior Living",
    "Valley Cleaning Services",
};

const char *const kAffiliations[] = {
    "St. Albert the Great Parish",
    "First Baptist Church",
    "Westminster Presbyterian",
    "Temple Israel",
    "Beavercreek High School NHS",
    "University of Dayton Campus Ministry",
    "Wright State Nursing Students",
    "Kettering Rotary Club",
    "Scout Troop 512",
    "NCR Retirees Club",
    "CareSource Volunteers",
    "Fairmont High School",
    "Grace United Methodist",
    "Kroger Store 421",
    "Miami Valley Islamic Center",
};

const char *const kComments[] = {
    "Referred by St. Vincent de Paul.",
    "Prefers afternoon pickup.",
    "Needs help carrying bags to the car.",
    "Moved from Cincinnati last spring.",
    "Speaks Spanish; daughter translates.",
    "Recently laid off; re-check income in three months.",
    "No car, takes RTA route 4.",
    "Lives with elderly mother.",
    "Asked about utility assistance.",
    "Neighbor Ms. Carter may pick up on her behalf.",
    "Works nights, usually comes Saturdays.",
    "Referred by the school nurse.",
};
const char *const kDiets[] = {
    "Diabetic, low sugar", "Gluten free",        "No pork",    "Peanut allergy (child)", "Vegetarian",
    "Low sodium",          "Lactose intolerant", "Halal only", "Soft foods only",        "Needs baby formula (Similac)",
};
const char *const kMedical[] = {
    "Type 2 diabetes",
    "High blood pressure",
    "Asthma (son)",
    "COPD, on oxygen",
    "Recovering from knee surgery",
    "Chronic back pain, cannot lift heavy boxes",
    "Pregnant, due in the spring",
    "Heart condition",
    "Uses a wheelchair",
    "Sees a counselor at the clinic",
};
const char *const kVisitComments[] = {
    "Picked up by neighbor", "Extra produce given", "Declined canned meat", "Delivered, homebound", "Added diapers", "Turkey included",
};
const char *const kVolunteerComments[] = {
    "Available Tuesday and Thursday mornings", "Can drive the van", "Speaks Spanish", "Prefers the intake desk", "Background check on file",
    "Helps with the holiday baskets",
};

QStringList toList(const char *const *items, int n)
{
    QStringList list;
    list.reserve(n);
    for (int i = 0; i < n; ++i)
        list.append(QString::fromUtf8(items[i]));
    return list;
}
#define TM_LIST(array) toList(array, count(array))

}   // namespace

Generator::Generator(QSqlDatabase db, const Options &options)
    : m_db(db)
    , m_options(options)
    , m_rng(options.seed)
    , m_surnames(TM_LIST(kSurnames))
    , m_male(TM_LIST(kMaleNames))
    , m_female(TM_LIST(kFemaleNames))
    , m_streets(TM_LIST(kStreets))
    , m_employers(TM_LIST(kEmployers))
    , m_affiliations(TM_LIST(kAffiliations))
    , m_comments(TM_LIST(kComments))
    , m_diets(TM_LIST(kDiets))
    , m_medical(TM_LIST(kMedical))
    , m_visitComments(TM_LIST(kVisitComments))
    , m_volunteerComments(TM_LIST(kVolunteerComments))
    , m_state(QString::fromLatin1(kState))
{ }

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
    const QVariantList values = {QStringLiteral("Riverside Community Food Pantry"),
                                 QStringLiteral("1235 Harshman Rd"),
                                 m_cities.at(kRiversideZip),
                                 m_state,
                                 m_zips.at(kRiversideZip),
                                 QStringLiteral("9375550142")};
    QSqlQuery query(m_db);
    if (!prepare(query,
                 QStringLiteral("UPDATE Organization SET OrganizationName = ?, OrganizationAddress = ?, "
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
    if (!prepare(query,
                 QStringLiteral("INSERT INTO Organization (OrganizationName, OrganizationAddress, "
                                "OrganizationCity, OrganizationState, OrganizationZip, OrganizationPhone) "
                                "VALUES (?, ?, ?, ?, ?, ?)")))
        return false;
    for (const QVariant &v : values)
        query.addBindValue(v);
    return query.exec() || fail(QStringLiteral("Could not add the Organization row"), query);
}

}   // namespace DemoData::detail
