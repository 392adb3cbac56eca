#include "FormTesting.h"
#include "frmFamilyMember.h"

#include <QDate>
#include <QLabel>

class tst_FamilyMember : public QObject
{
    Q_OBJECT

    static frmFamilyMember *openFor(ClientWorld &world, qint64 clientId, const QString &memberId = {})
    {
        world.main.openRecordEditor(RecordKind::FamilyMember, QString::number(clientId), memberId);
        return qobject_cast<frmFamilyMember *>(world.main.activeChild());
    }
    static QString text(QWidget *w, const char *name) { return w->findChild<QLineEdit *>(QString::fromLatin1(name))->text(); }
    static qint64 relationship(const char *description)
    {
        return TestDatabase::lookupId(QStringLiteral("Relationships"), QString::fromLatin1(description));
    }

private slots:
    void formShowsTheClientAndItsFields()
    {
        ClientWorld world;
        const qint64 id = ClientWorld::addClient(QStringLiteral("O'Brien"), QStringLiteral("Mary"), QStringLiteral("K"),
                                                 {{QStringLiteral("SocialSecurityNumber"), QStringLiteral("123456789")},
                                                  {QStringLiteral("DriversLicenseNumber"), QStringLiteral("D1234")}});
        auto *w = openFor(world, id);
        QVERIFY(w);
        QCOMPARE(w->windowTitle(), QStringLiteral("Family Member"));
        QVERIFY(text(w, "txtClientName").contains(QStringLiteral("O'Brien")));
        QCOMPARE(text(w, "txtClientSSN"), QStringLiteral("123-45-6789"));
        QCOMPARE(text(w, "txtClientDLN"), QStringLiteral("D1234"));

        const QList<std::pair<QString, QString>> masks = {
            {QStringLiteral("SocialSecurityNumber"), QStringLiteral("999-99-9999")},
            {QStringLiteral("BirthDate"), QStringLiteral("99/99/9999")},
            {QStringLiteral("MobilePhone"), QStringLiteral("(999) 999-9999")},
            {QStringLiteral("WorkPhone"), QStringLiteral("(999) 999-9999")},
            {QStringLiteral("EmployerDurationYears"), QStringLiteral("999")},
            {QStringLiteral("EmployerDurationMonths"), QStringLiteral("999")},
        };
        for (const auto &[field, mask] : masks)
            QCOMPARE(qobject_cast<QLineEdit *>(fieldOf(w, field))->inputMask().section(QLatin1Char(';'), 0, 0), mask);
        QStringList bold;
        for (QLabel *label : w->findChildren<QLabel *>(QStringLiteral("lblLabels")))
            if (label->font().bold())
                bold << label->text();
        QCOMPARE(bold, (QStringList {QStringLiteral("Relationship"), QStringLiteral("Last Name"), QStringLiteral("First Name")}));
        auto *relationships = qobject_cast<QComboBox *>(fieldOf(w, QStringLiteral("RelationshipID")));
        QVERIFY(relationships->findText(QStringLiteral("Daughter")) >= 0);

        // A member that is not on file is not shown.
        ClientWorld::closeWindow(w);
        world.prompts.clear();
        QVERIFY(!openFor(world, id, QStringLiteral("9999")));
        QCOMPARE(world.prompts.last().title, QStringLiteral("Application Error"));
        QCOMPARE(world.prompts.last().text, QStringLiteral("Error retrieving record."));
        QVERIFY(!world.main.findChildWindow<frmFamilyMember>());
    }

    void requiredFieldsAndChecks()
    {
        ClientWorld world;
        const qint64 id = ClientWorld::addClient(QStringLiteral("Adams"), QStringLiteral("Ann"));
        auto *w = openFor(world, id);
        typeInto(w, QStringLiteral("Comments"), QStringLiteral("new member"));
        const QList<std::pair<QString, QString>> steps = {
            {QStringLiteral("RelationshipID"), QStringLiteral("Relationship")},
            {QStringLiteral("LastName"), QStringLiteral("Last Name")},
            {QStringLiteral("FirstName"), QStringLiteral("First Name")},
        };
        const QStringList values = {QStringLiteral("Daughter"), QStringLiteral("Adams"), QStringLiteral("Beth")};
        for (int i = 0; i < steps.size(); ++i) {
            world.prompts.clear();
            QVERIFY(!w->SaveCurrentRecord());
            QCOMPARE(world.prompts.last().title, QStringLiteral("Required Field Empty"));
            QCOMPARE(world.prompts.last().text, steps.at(i).second + QStringLiteral(" is required."));
            QCOMPARE(world.prompts.last().icon, Prompt::Icon::Exclamation);
            typeInto(w, steps.at(i).first, values.at(i));
        }
        QCOMPARE(TestDatabase::count(QStringLiteral("Family")), 0);

        // Seven digits are not a phone number: the box fills from the area code.
        typeInto(w, QStringLiteral("MobilePhone"), QStringLiteral("5551234"));
        QVERIFY(!w->SaveCurrentRecord());
        QCOMPARE(world.prompts.last().title, QStringLiteral("Data Entry Error"));
        QCOMPARE(world.prompts.last().text, QStringLiteral("Mobile Phone must have all ten digits, area code first."));
        typeInto(w, QStringLiteral("MobilePhone"), QStringLiteral("3095551234"));
        const QDate tomorrow = QDate::currentDate().addDays(1);
        typeInto(w, QStringLiteral("BirthDate"), tomorrow.toString(QStringLiteral("MMddyyyy")));
        QVERIFY(!w->SaveCurrentRecord());
        QCOMPARE(world.prompts.last().text, QStringLiteral("Birth Date cannot be in the future."));
        typeInto(w, QStringLiteral("BirthDate"), QStringLiteral("13452001"));   // the column's own rule speaks first
        QVERIFY(!w->SaveCurrentRecord());
        QCOMPARE(world.prompts.last().text, QStringLiteral("Birth Date is not a valid date."));
        typeInto(w, QStringLiteral("BirthDate"), QStringLiteral("12312001"));
        QVERIFY(w->SaveCurrentRecord());
        QCOMPARE(TestDatabase::count(QStringLiteral("Family"),
                                     QStringLiteral("ClientID = ? AND RelationshipID = ? AND LastName = 'Adams' "
                                                    "AND FirstName = 'Beth' AND MobilePhone = '3095551234' "
                                                    "AND BirthDate = '2001-12-31' AND Comments = 'new member'"),
                                     {id, relationship("Daughter")}),
                 1);
    }

    void employerZipFillsCityAndState()
    {
        ClientWorld world;
        TestDatabase::insert(QStringLiteral("ZipCode"),
                             {{QStringLiteral("ZipCode"), QStringLiteral("61602")},
                              {QStringLiteral("City"), QStringLiteral("Peoria")},
                              {QStringLiteral("State"), QStringLiteral("IL")}});
        auto *w = openFor(world, ClientWorld::addClient(QStringLiteral("Adams"), QStringLiteral("Ann")));
        typeInto(w, QStringLiteral("EmployerCity"), QStringLiteral("Keep"));
        typeInto(w, QStringLiteral("EmployerZip"), QStringLiteral("99999"));
        QCOMPARE(qobject_cast<QLineEdit *>(fieldOf(w, QStringLiteral("EmployerCity")))->text(), QStringLiteral("Keep"));
        typeInto(w, QStringLiteral("EmployerZip"), QStringLiteral("61602"));
        QCOMPARE(qobject_cast<QLineEdit *>(fieldOf(w, QStringLiteral("EmployerCity")))->text(), QStringLiteral("Peoria"));
        QCOMPARE(qobject_cast<QComboBox *>(fieldOf(w, QStringLiteral("EmployerState")))->currentText(), QStringLiteral("IL"));
    }

    void deletingTheOnlyMemberStartsANewOne()
    {
        ClientWorld world;
        const qint64 id = ClientWorld::addClient(QStringLiteral("Adams"), QStringLiteral("Ann"));
        const qint64 member = TestDatabase::insert(QStringLiteral("Family"),
                                                   {{QStringLiteral("ClientID"), id},
                                                    {QStringLiteral("RelationshipID"), relationship("Son")},
                                                    {QStringLiteral("LastName"), QStringLiteral("Adams")},
                                                    {QStringLiteral("FirstName"), QStringLiteral("Tim")}});
        auto *w = openFor(world, id, QString::number(member));
        QCOMPARE(w->FamilyMemberID(), QString::number(member));
        world.prompts.answer(Prompt::No);
        world.toolbar("Delete");
        QCOMPARE(world.prompts.last().title, QStringLiteral("Delete Family Member?"));
        QCOMPARE(world.prompts.last().text, QStringLiteral("Are you sure you want to delete family member 'Adams, Tim '?"));
        QCOMPARE(world.prompts.last().icon, Prompt::Icon::Question);
        QCOMPARE(world.prompts.last().buttons, Prompt::Yes | Prompt::No);
        QCOMPARE(TestDatabase::count(QStringLiteral("Family")), 1);

        world.prompts.answer(Prompt::Yes);
        world.toolbar("Delete");
        QCOMPARE(world.prompts.last().title, QStringLiteral("Delete Family Member"));
        QCOMPARE(world.prompts.last().text, QStringLiteral("Family member 'Adams, Tim ' deleted."));
        QCOMPARE(world.prompts.last().icon, Prompt::Icon::None);
        QCOMPARE(TestDatabase::count(QStringLiteral("Family")), 0);
        QVERIFY(w->FamilyMemberID().isEmpty());
        QCOMPARE(qobject_cast<QLineEdit *>(fieldOf(w, QStringLiteral("FirstName")))->text(), QString());

        // The new member belongs to the same client even with only the required fields typed.
        typeInto(w, QStringLiteral("RelationshipID"), QStringLiteral("Other"));
        typeInto(w, QStringLiteral("LastName"), QStringLiteral("Ray"));
        typeInto(w, QStringLiteral("FirstName"), QStringLiteral("Al"));
        QVERIFY(w->SaveCurrentRecord());
        QCOMPARE(TestDatabase::count(QStringLiteral("Family"), QStringLiteral("ClientID = ?"), {id}), 1);
    }
};

QTEST_MAIN(tst_FamilyMember)
#include "tst_familymember.moc"
