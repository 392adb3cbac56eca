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
        return TestDatabase::lookupId("Relationships", QString::fromLatin1(description));
    }

private slots:
    // The form shows whose member it is; Delete asks, and leaves a new member of the same client.
    void formShowsTheClientAndDeletesTheMember()
    {
        ClientWorld world;
        const qint64 id
            = ClientWorld::addClient("O'Brien", "Mary", "K", {{"SocialSecurityNumber", "123456789"}, {"DriversLicenseNumber", "D1234"}});
        const qint64 member = TestDatabase::insert(
            "Family", {{"ClientID", id}, {"RelationshipID", relationship("Son")}, {"LastName", "Adams"}, {"FirstName", "Tim"}});
        auto *w = openFor(world, id, QString::number(member));
        QVERIFY(w);
        QCOMPARE(w->windowTitle(), QStringLiteral("Family Member"));
        QCOMPARE(w->FamilyMemberID(), QString::number(member));
        QVERIFY(text(w, "txtClientName").contains(QStringLiteral("O'Brien")));
        QCOMPARE(text(w, "txtClientSSN"), QStringLiteral("123-45-6789"));
        QCOMPARE(text(w, "txtClientDLN"), QStringLiteral("D1234"));
        QStringList bold;
        for (QLabel *label : w->findChildren<QLabel *>(QStringLiteral("lblLabels")))
            if (label->font().bold())
                bold << label->text();
        QCOMPARE(bold, (QStringList {"Relationship", "Last Name", "First Name"}));

        world.prompts.answer(Prompt::No);
        world.toolbar("Delete");
        QCOMPARE(world.prompts.last(),
                 (Prompt::Message {"Delete Family Member?", "Are you sure you want to delete family member 'Adams, Tim '?",
                                   Prompt::Icon::Question, Prompt::Yes | Prompt::No}));
        QCOMPARE(TestDatabase::count("Family"), 1);
        world.prompts.answer(Prompt::Yes);
        world.toolbar("Delete");
        QCOMPARE(world.prompts.last(),
                 (Prompt::Message {"Delete Family Member", "Family member 'Adams, Tim ' deleted.", Prompt::Icon::None, Prompt::Ok}));
        QCOMPARE(TestDatabase::count("Family"), 0);
        QVERIFY(w->FamilyMemberID().isEmpty());
        QCOMPARE(qobject_cast<QLineEdit *>(fieldOf(w, "FirstName"))->text(), QString());
        // The new member belongs to the same client even with only the required fields typed.
        typeInto(w, "RelationshipID", "Other");
        typeInto(w, "LastName", "Ray");
        typeInto(w, "FirstName", "Al");
        QVERIFY(w->SaveCurrentRecord());
        QCOMPARE(TestDatabase::count("Family", "ClientID = ?", {id}), 1);

        // A member that is not on file is not shown.
        ClientWorld::closeWindow(w);
        QVERIFY(!openFor(world, id, QStringLiteral("9999")));
        QCOMPARE(world.prompts.last().title, QStringLiteral("Application Error"));
        QCOMPARE(world.prompts.last().text, QStringLiteral("Error retrieving record."));
        QVERIFY(!world.main.findChildWindow<frmFamilyMember>());
    }

    void requiredFieldsAndChecks()
    {
        ClientWorld world;
        const qint64 id = ClientWorld::addClient("Adams", "Ann");
        auto *w = openFor(world, id);
        typeInto(w, "Comments", "new member");
        // field, its caption, a value
        const char *const steps[][3]
            = {{"RelationshipID", "Relationship", "Daughter"}, {"LastName", "Last Name", "Adams"}, {"FirstName", "First Name", "Beth"}};
        for (const auto &step : steps) {
            QVERIFY(!w->SaveCurrentRecord());
            QCOMPARE(world.prompts.last(),
                     (Prompt::Message {"Required Field Empty", QStringLiteral("%1 is required.").arg(QLatin1String(step[1])),
                                       Prompt::Icon::Exclamation, Prompt::Ok}));
            typeInto(w, step[0], step[2]);
        }
        QCOMPARE(TestDatabase::count("Family"), 0);

        // Seven digits are not a phone number: the box fills from the area code.
        typeInto(w, "MobilePhone", "5551234");
        QVERIFY(!w->SaveCurrentRecord());
        QCOMPARE(world.prompts.last().title, QStringLiteral("Data Entry Error"));
        QCOMPARE(world.prompts.last().text, QStringLiteral("Mobile Phone must have all ten digits, area code first."));
        typeInto(w, "MobilePhone", "3095551234");
        typeInto(w, "BirthDate", QDate::currentDate().addDays(1).toString(QStringLiteral("MMddyyyy")));
        QVERIFY(!w->SaveCurrentRecord());
        QCOMPARE(world.prompts.last().text, QStringLiteral("Birth Date cannot be in the future."));
        typeInto(w, "BirthDate", "13452001");   // the column's own rule speaks first
        QVERIFY(!w->SaveCurrentRecord());
        QCOMPARE(world.prompts.last().text, QStringLiteral("Birth Date is not a valid date."));
        typeInto(w, "BirthDate", "02292012");   // a leap day
        typeInto(w, "SocialSecurityNumber", "987654321");
        // A known employer zip code fills the employer's city and state; an unknown one leaves them.
        TestDatabase::insert("ZipCode", {{"ZipCode", "61602"}, {"City", "Peoria"}, {"State", "IL"}});
        typeInto(w, "EmployerCity", "Keep");
        typeInto(w, "EmployerZip", "99999");
        QCOMPARE(qobject_cast<QLineEdit *>(fieldOf(w, "EmployerCity"))->text(), QStringLiteral("Keep"));
        typeInto(w, "EmployerZip", "61602");
        QCOMPARE(qobject_cast<QComboBox *>(fieldOf(w, "EmployerState"))->currentText(), QStringLiteral("IL"));
        QVERIFY(w->SaveCurrentRecord());
        QCOMPARE(TestDatabase::count("Family",
                                     "ClientID = ? AND RelationshipID = ? AND LastName = 'Adams' AND FirstName = 'Beth'"
                                     " AND MobilePhone = '3095551234' AND BirthDate = '2012-02-29' AND SocialSecurityNumber = '987654321'"
                                     " AND EmployerCity = 'Peoria' AND EmployerState = 'IL' AND Comments = 'new member'",
                                     {id, relationship("Daughter")}),
                 1);
    }
};

QTEST_MAIN(tst_FamilyMember)
#include "tst_familymember.moc"
