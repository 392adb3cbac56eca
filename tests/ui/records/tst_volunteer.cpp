#include "FormTesting.h"
#include "frmFamilyMember.h"
#include "frmVolunteer.h"

class tst_Volunteer : public QObject
{
    Q_OBJECT

private:
    static qint64 addVolunteer(const QString &last, const QString &first)
    {
        return TestDatabase::insert(QStringLiteral("Volunteer"),
                                    {{QStringLiteral("LastName"), last}, {QStringLiteral("FirstName"), first}});
    }

    static frmVolunteer *openVolunteers(EditorDesk &desk)
    {
        menu(desk.main, "mnuDataVolunteers")->trigger();
        return desk.main.findChildWindow<frmVolunteer>();
    }

private slots:
    void opensOnNewVolunteerAndMoves()
    {
        EditorDesk desk;
        const qint64 zed = addVolunteer(QStringLiteral("Zimmer"), QStringLiteral("Ann"));
        const qint64 abe = addVolunteer(QStringLiteral("Abbott"), QStringLiteral("Bo"));
        auto *w = openVolunteers(desk);
        QVERIFY(w);
        QCOMPARE(w->windowTitle(), QStringLiteral("Volunteers"));
        QCOMPARE(w->kind(), MdiChild::Kind::Volunteer);
        QVERIFY(!w->findChild<QLineEdit *>(QStringLiteral("txtClientName")));
        // Opened without a volunteer: a new one, ready to type.
        QVERIFY(w->VolunteerID().isEmpty());
        QVERIFY(lineEdit(w, "LastName")->text().isEmpty());
        QVERIFY(!desk.main.toolbarButton(QStringLiteral("Delete"))->isEnabled());
        // The search bar and the filter serve the volunteers.
        QVERIFY(desk.main.toolbarButton(QStringLiteral("Filter"))->isEnabled());
        QVERIFY(desk.main.findChild<QComboBox *>(QStringLiteral("cboSearchOn"))->isEnabled());
        button(w, "cmdFirst")->click();
        QCOMPARE(w->VolunteerID(), QString::number(abe));
        QCOMPARE(statusText(w), QStringLiteral("Record: 1 of 2     ID: %1").arg(abe));
        QVERIFY(desk.main.toolbarButton(QStringLiteral("Delete"))->isEnabled());
        QCOMPARE(TestDatabase::count(QStringLiteral("Volunteer")), 2);

        // The search bar's choice.
        desk.main.showVolunteer(QString::number(zed));
        QCOMPARE(desk.main.findChildWindow<frmVolunteer>(), w);
        QCOMPARE(lineEdit(w, "LastName")->text(), QStringLiteral("Zimmer"));
        QCOMPARE(w->currentKey(), QString::number(zed));
    }

    void filterWithoutMatch()
    {
        EditorDesk desk;
        addVolunteer(QStringLiteral("Abbott"), QStringLiteral("Bo"));
        auto *w = openVolunteers(desk);
        QVERIFY(w->hasSQL());
        w->setSQL(QStringLiteral("SELECT * FROM Volunteer WHERE LastName = 'Nobody' ORDER BY LastName"));
        w->ExecuteSQL();
        QCOMPARE(w->windowTitle(), QStringLiteral("Volunteers (Filter Applied)"));
        QCOMPARE(desk.prompts.last().title, QStringLiteral("No Volunteer Records Found"));
        QCOMPARE(desk.prompts.last().text, QStringLiteral("No records were found that matched the specified criteria."));
        QCOMPARE(desk.prompts.last().icon, Prompt::Icon::Exclamation);
        QVERIFY(lineEdit(w, "LastName")->text().isEmpty());
        QVERIFY(!w->DataChanged());

        w->setSQL({});
        w->ExecuteSQL();
        QCOMPARE(w->windowTitle(), QStringLiteral("Volunteers"));
        QCOMPARE(lineEdit(w, "LastName")->text(), QStringLiteral("Abbott"));
        QCOMPARE(desk.prompts.messages().size(), 1);
    }

    void newVolunteerWithZipCode()
    {
        EditorDesk desk;
        TestDatabase::insert(QStringLiteral("ZipCode"),
                             {{QStringLiteral("ZipCode"), QStringLiteral("97201")},
                              {QStringLiteral("City"), QStringLiteral("Portland")},
                              {QStringLiteral("State"), QStringLiteral("OR")}});
        auto *w = openVolunteers(desk);
        QVERIFY(w->VolunteerID().isEmpty());   // none yet: a blank new volunteer
        typeInto(lineEdit(w, "LastName"), QStringLiteral("O'Neil"));
        QVERIFY(!w->SaveCurrentRecord());
        QCOMPARE(desk.prompts.last().title, QStringLiteral("Required Field Empty"));
        QCOMPARE(desk.prompts.last().text, QStringLiteral("First Name is required."));
        typeInto(lineEdit(w, "FirstName"), QStringLiteral("Pat"));
        QComboBox *zip = combo(w, "ZipCode");
        zip->setFocus();
        QTest::keyClicks(zip, QStringLiteral("97201"));
        QCOMPARE(lineEdit(w, "City")->text(), QStringLiteral("Portland"));
        QCOMPARE(combo(w, "State")->currentText(), QStringLiteral("OR"));
        typeInto(lineEdit(w, "HomePhone"), QStringLiteral("5035551212"));
        QVERIFY(w->SaveCurrentRecord());
        QCOMPARE(TestDatabase::scalar(QStringLiteral("SELECT City || State || ZipCode || HomePhone FROM Volunteer WHERE LastName = ?"),
                                      {QStringLiteral("O'Neil")})
                     .toString(),
                 QStringLiteral("PortlandOR972015035551212"));

        desk.prompts.answer(Prompt::Yes);
        w->DeleteCurrentRecord();
        QCOMPARE(desk.prompts.messages().at(desk.prompts.messages().size() - 2).text,
                 QStringLiteral("Are you sure you want to delete volunteer 'O'Neil, Pat'?"));
        QCOMPARE(desk.prompts.last().title, QStringLiteral("Delete Volunteer"));
        QCOMPARE(TestDatabase::count(QStringLiteral("Volunteer")), 0);
    }

    void familyMember()
    {
        EditorDesk desk;
        auto *w = desk.open<frmFamilyMember>(RecordKind::FamilyMember);
        QVERIFY(w);
        QCOMPARE(w->windowTitle(), QStringLiteral("Family Member"));
        typeInto(lineEdit(w, "LastName"), QStringLiteral("O'Brien"));
        typeInto(lineEdit(w, "FirstName"), QStringLiteral("Sean"));
        QVERIFY(!w->SaveCurrentRecord());
        QCOMPARE(desk.prompts.last().text, QStringLiteral("Relationship is required."));
        choose(combo(w, "RelationshipID"), QStringLiteral("Son"));
        typeInto(lineEdit(w, "BirthDate"), QStringLiteral("02292012"));
        typeInto(lineEdit(w, "SocialSecurityNumber"), QStringLiteral("987654321"));
        QVERIFY(w->SaveCurrentRecord());
        QCOMPARE(TestDatabase::scalar(QStringLiteral("SELECT ClientID || '|' || BirthDate || '|' || SocialSecurityNumber FROM Family"))
                     .toString(),
                 QStringLiteral("%1|2012-02-29|987654321").arg(desk.clientId));
        QCOMPARE(statusText(w), QStringLiteral("Record: 1 of 1     ID: %1").arg(w->FamilyMemberID()));

        desk.prompts.answer(Prompt::Yes);
        w->DeleteCurrentRecord();
        QCOMPARE(desk.prompts.messages().at(desk.prompts.messages().size() - 2).title, QStringLiteral("Delete Family Member?"));
        QCOMPARE(desk.prompts.messages().at(desk.prompts.messages().size() - 2).text,
                 QStringLiteral("Are you sure you want to delete family member 'O'Brien, Sean '?"));
        QCOMPARE(desk.prompts.last().text, QStringLiteral("Family member 'O'Brien, Sean ' deleted."));
        QCOMPARE(TestDatabase::count(QStringLiteral("Family")), 0);
        QVERIFY(lineEdit(w, "LastName")->text().isEmpty());

        // A member can be saved with nothing but the required fields; it carries the client.
        choose(combo(w, "RelationshipID"), QStringLiteral("Spouse"));
        typeInto(lineEdit(w, "LastName"), QStringLiteral("Lee"));
        typeInto(lineEdit(w, "FirstName"), QStringLiteral("Kim"));
        QVERIFY(w->SaveCurrentRecord());
        QCOMPARE(TestDatabase::scalar(QStringLiteral("SELECT ClientID FROM Family")).toLongLong(), desk.clientId);
    }

    void missingRecordIsReported()
    {
        EditorDesk desk;
        desk.main.openRecordEditor(RecordKind::FamilyMember, QString::number(desk.clientId), QStringLiteral("999"));
        QVERIFY(!desk.main.findChildWindow<frmFamilyMember>());
        QCOMPARE(desk.prompts.last().title, QStringLiteral("Application Error"));
        QCOMPARE(desk.prompts.last().text, QStringLiteral("Error retrieving record."));
    }
};

QTEST_MAIN(tst_Volunteer)
#include "tst_volunteer.moc"
