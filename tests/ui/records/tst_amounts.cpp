#include "FormTesting.h"
#include "frmIncomeExpense.h"
#include "frmPaymentHistory.h"

class tst_Amounts : public QObject
{
    Q_OBJECT

private slots:
    void paymentSavesCents()
    {
        EditorDesk desk;
        auto *w = desk.open<frmPaymentHistory>(RecordKind::Payment);
        QVERIFY(w);
        QCOMPARE(w->windowTitle(), QStringLiteral("Payment History"));
        QCOMPARE(dateEdit(w, "PaymentDate")->date(), QDate::currentDate());
        choose(combo(w, "PaymentsTypeID"), QStringLiteral("Utilities"));
        QLineEdit *paid = lineEdit(w, "AmountPaid");
        typeInto(paid, QStringLiteral("1234.5"));
        lineEdit(w, "AmountRequested")->setFocus();   // leaving formats the amount
        QCOMPARE(paid->text(), QStringLiteral("$1,234.50"));
        paid->setFocus();   // entering shows it bare
        QCOMPARE(paid->text(), QStringLiteral("1,234.50"));
        QVERIFY(w->SaveCurrentRecord());   // an empty Amount Requested is fine
        QCOMPARE(TestDatabase::scalar(QStringLiteral("SELECT AmountPaid FROM Payments")).toLongLong(), 123450);
        QVERIFY(TestDatabase::scalar(QStringLiteral("SELECT AmountRequested FROM Payments")).isNull());
        QCOMPARE(TestDatabase::scalar(QStringLiteral("SELECT ClientID FROM Payments")).toLongLong(), desk.clientId);
        QCOMPARE(TestDatabase::scalar(QStringLiteral("SELECT PaymentDate FROM Payments")).toString(),
                 QDate::currentDate().toString(Qt::ISODate));
        QCOMPARE(TestDatabase::scalar(QStringLiteral("SELECT PaymentsTypeID FROM Payments")).toLongLong(),
                 TestDatabase::lookupId(QStringLiteral("PaymentTypes"), QStringLiteral("Utilities")));
        QVERIFY(desk.prompts.messages().isEmpty());
    }

    void amountKeysAreFiltered()
    {
        EditorDesk desk;
        auto *w = desk.open<frmPaymentHistory>(RecordKind::Payment);
        QLineEdit *requested = lineEdit(w, "AmountRequested");
        typeInto(requested, QStringLiteral("12.5.0"));
        QCOMPARE(requested->text(), QStringLiteral("12.50"));
        // A point is refused while the text holds one, even a selected one.
        requested->selectAll();
        QTest::keyClicks(requested, QStringLiteral(".5"));
        QCOMPARE(requested->text(), QStringLiteral("5"));
        typeInto(requested, QStringLiteral("a$-7,x "));
        QCOMPARE(requested->text(), QStringLiteral("7"));
        QTest::keyClick(requested, Qt::Key_Backspace);
        QCOMPARE(requested->text(), QString());
    }

    void zeroAmounts()
    {
        EditorDesk desk;
        auto *w = desk.open<frmPaymentHistory>(RecordKind::Payment);
        choose(combo(w, "PaymentsTypeID"), QStringLiteral("Rent"));
        QVERIFY(!w->SaveCurrentRecord());
        QCOMPARE(desk.prompts.last().title, QStringLiteral("Required Field Empty"));
        QCOMPARE(desk.prompts.last().text, QStringLiteral("Amount Paid is required."));

        typeInto(lineEdit(w, "AmountPaid"), QStringLiteral("0.40"));
        QVERIFY(!w->SaveCurrentRecord());
        QCOMPARE(desk.prompts.last().title, QStringLiteral("Data Entry Error"));
        QCOMPARE(desk.prompts.last().text, QStringLiteral("Amount Paid cannot be zero."));
        QCOMPARE(desk.prompts.last().icon, Prompt::Icon::Exclamation);

        typeInto(lineEdit(w, "AmountPaid"), QStringLiteral("0.50"));   // half to even: 0
        QVERIFY(!w->SaveCurrentRecord());
        QCOMPARE(desk.prompts.last().text, QStringLiteral("Amount Paid cannot be zero."));

        typeInto(lineEdit(w, "AmountRequested"), QStringLiteral("0.2"));
        typeInto(lineEdit(w, "AmountPaid"), QStringLiteral("0.60"));
        QVERIFY(!w->SaveCurrentRecord());
        QCOMPARE(desk.prompts.last().text, QStringLiteral("Amount Requested cannot be zero."));
        QCOMPARE(TestDatabase::count(QStringLiteral("Payments")), 0);

        typeInto(lineEdit(w, "AmountRequested"), QStringLiteral("1.50"));   // half to even: 2
        QVERIFY(w->SaveCurrentRecord());
        QCOMPARE(TestDatabase::scalar(QStringLiteral("SELECT AmountRequested FROM Payments")).toLongLong(), 150);
        lineEdit(w, "AmountRequested")->clear();
        QVERIFY(w->SaveCurrentRecord());
        QCOMPARE(TestDatabase::scalar(QStringLiteral("SELECT AmountPaid FROM Payments")).toLongLong(), 60);
        QVERIFY(TestDatabase::scalar(QStringLiteral("SELECT AmountRequested FROM Payments")).isNull());
    }

    void paymentDelete()
    {
        EditorDesk desk;
        const qint64 id = TestDatabase::insert(
            QStringLiteral("Payments"),
            {{QStringLiteral("ClientID"), desk.clientId},
             {QStringLiteral("PaymentDate"), QStringLiteral("2024-02-03")},
             {QStringLiteral("PaymentsTypeID"), TestDatabase::lookupId(QStringLiteral("PaymentTypes"), QStringLiteral("Rent"))},
             {QStringLiteral("AmountPaid"), 5000}});
        auto *w = desk.open<frmPaymentHistory>(RecordKind::Payment, QString::number(id));
        QCOMPARE(lineEdit(w, "AmountPaid")->text(), QStringLiteral("$50.00"));
        desk.prompts.answer(Prompt::Yes);
        w->DeleteCurrentRecord();
        QCOMPARE(desk.prompts.messages().at(0).title, QStringLiteral("Delete Payment Item?"));
        QCOMPARE(desk.prompts.messages().at(0).text, QStringLiteral("Are you sure you want to delete payment item '02/03/2024 Rent'?"));
        QCOMPARE(desk.prompts.messages().at(1).title, QStringLiteral("Delete Payment Item"));
        QCOMPARE(desk.prompts.messages().at(1).text, QStringLiteral("Payment item '02/03/2024 Rent' deleted."));
        QCOMPARE(TestDatabase::count(QStringLiteral("Payments")), 0);
    }

    void incomeAndExpenses()
    {
        EditorDesk desk;
        auto *income = desk.open<frmIncomeExpense>(RecordKind::Income);
        QCOMPARE(income->windowTitle(), QStringLiteral("Add/Edit Income"));
        QCOMPARE(income->label(0)->text(), QStringLiteral("Income Source"));
        QCOMPARE(income->label(1)->text(), QStringLiteral("Amount"));
        QVERIFY(income->label(0)->font().bold());
        QVERIFY(combo(income, "IncomeSourceID")->findText(QStringLiteral("Pension")) >= 0);
        QCOMPARE(combo(income, "IncomeSourceID")->findText(QStringLiteral("Utilities")), -1);
        choose(combo(income, "IncomeSourceID"), QStringLiteral("Pension"));
        typeInto(lineEdit(income, "Amount"), QStringLiteral("0"));
        QVERIFY(!income->SaveCurrentRecord());
        QCOMPARE(desk.prompts.last().text, QStringLiteral("Amount cannot be zero."));
        QCOMPARE(desk.prompts.last().title, QStringLiteral("Data Entry Error"));
        // The amount box filters keys, shows the currency on leaving and drops it on entering.
        typeInto(lineEdit(income, "Amount"), QStringLiteral("8x12.2.5"));
        QCOMPARE(lineEdit(income, "Amount")->text(), QStringLiteral("812.25"));
        combo(income, "IncomeSourceID")->setFocus();
        QCOMPARE(lineEdit(income, "Amount")->text(), QStringLiteral("$812.25"));
        lineEdit(income, "Amount")->setFocus();
        QCOMPARE(lineEdit(income, "Amount")->text(), QStringLiteral("812.25"));
        QCOMPARE(combo(income, "IncomeSourceID")->property("Tag").toString(), QStringLiteral("R.Ex_Left,Ex_Top,Ex_Height,Ex_Font"));
        QVERIFY(income->SaveCurrentRecord());
        QCOMPARE(TestDatabase::scalar(QStringLiteral("SELECT Amount FROM Income WHERE ClientID = ?"), {desk.clientId}).toLongLong(), 81225);

        auto *expenses = desk.open<frmIncomeExpense>(RecordKind::Expenses);
        QVERIFY(expenses != income);
        QCOMPARE(expenses->windowTitle(), QStringLiteral("Add/Edit Expenses"));
        QCOMPARE(expenses->label(0)->text(), QStringLiteral("Expense Category"));
        QVERIFY(combo(expenses, "ExpenseCategoryID")->findText(QStringLiteral("Child care")) >= 0);
        QVERIFY(expenses->IncomeExpenseItemID().isEmpty());
        choose(combo(expenses, "ExpenseCategoryID"), QStringLiteral("Utilities"));
        QVERIFY(!expenses->SaveCurrentRecord());
        QCOMPARE(desk.prompts.last().text, QStringLiteral("Amount is required."));
        typeInto(lineEdit(expenses, "Amount"), QStringLiteral("95"));
        QVERIFY(expenses->SaveCurrentRecord());
        QCOMPARE(TestDatabase::count(QStringLiteral("Expenses")), 1);
        QCOMPARE(TestDatabase::count(QStringLiteral("Income")), 1);

        desk.prompts.answer(Prompt::Yes);
        expenses->DeleteCurrentRecord();
        QCOMPARE(desk.prompts.messages().at(desk.prompts.messages().size() - 2).title, QStringLiteral("Delete Expenses Item?"));
        QCOMPARE(desk.prompts.messages().at(desk.prompts.messages().size() - 2).text,
                 QStringLiteral("Are you sure you want to delete 'Utilities'?"));
        QCOMPARE(desk.prompts.last().title, QStringLiteral("Delete Expenses Item"));
        QCOMPARE(desk.prompts.last().text, QStringLiteral("'Utilities' deleted."));
        QCOMPARE(TestDatabase::count(QStringLiteral("Expenses")), 0);

        // Opening income again for the same client brings the open window forward on the record.
        const QString incomeId = TestDatabase::scalar(QStringLiteral("SELECT IncomeItemID FROM Income")).toString();
        auto *again = desk.open<frmIncomeExpense>(RecordKind::Income, incomeId);
        QCOMPARE(again, income);
        QCOMPARE(income->IncomeExpenseItemID(), incomeId);
        QCOMPARE(lineEdit(income, "Amount")->text().remove(QLatin1Char('$')), QStringLiteral("812.25"));
    }
};

QTEST_MAIN(tst_Amounts)
#include "tst_amounts.moc"
