#include "frmPaymentHistory.h"

#include "AmountBox.h"
#include "DataBinding.h"
#include "Money.h"
#include "RecordQueries.h"

#include <QComboBox>
#include <QDateEdit>
#include <QGridLayout>
#include <QLineEdit>
#include <QPlainTextEdit>

frmPaymentHistory::frmPaymentHistory(Workspace *main, QWidget *parent) : RecordEditor(main, parent)
{
    setObjectName(QStringLiteral("frmPaymentHistory"));
    setWindowTitle(QStringLiteral("Payment History"));
}

QString frmPaymentHistory::query() const
{
    return RecordQueries::payments();
}

void frmPaymentHistory::buildFields()
{
    const QString required = QStringLiteral("R,Ex_Left,Ex_Top,Ex_Height,Ex_Font");
    auto *date = new QDateEdit;
    date->setDisplayFormat(QStringLiteral("MM/dd/yyyy"));
    date->setCalendarPopup(true);
    date->setMaximumWidth(130);
    addField(date, "dtpData", QStringLiteral("PaymentDate"), required, 0, QStringLiteral("Payment Date"), 0);
    addField(new QComboBox, "cboData", QStringLiteral("PaymentsTypeID"), required, 1, QStringLiteral("Payment Type"), 1);
    auto amount = [this](const QString &column, const QString &tag, int index, const QString &caption) {
        auto *box = new AmountBox;
        box->setMaximumWidth(130);
        addField(box, "txtData", column, tag, index, caption, index);
    };
    amount(QStringLiteral("AmountRequested"), QStringLiteral("Ex_Left,Ex_Top,Ex_Height,Ex_Font"), 2, QStringLiteral("Amount Requested"));
    amount(QStringLiteral("AmountPaid"), required, 3, QStringLiteral("Amount Paid"));
    addField(new QPlainTextEdit, "txtData", QStringLiteral("Comments"), QStringLiteral("Ex_All"), 4, QStringLiteral("Comments"), 4);
    fieldGrid()->setColumnStretch(1, 1);
}

bool frmPaymentHistory::checkField(QWidget *control, const QString &column, const QString &value, const QString &caption)
{
    if ((column == QLatin1String("AmountRequested") || column == QLatin1String("AmountPaid")) && !value.isEmpty()) {
        const auto cents = Money::parse(value);
        if (cents && Money::wholeUnitsHalfEven(*cents) == 0)
            return refuse(control, QStringLiteral("Data Entry Error"), caption + QStringLiteral(" cannot be zero."));
    }
    return RecordEditor::checkField(control, column, value, caption);
}

RecordEditor::DeleteTexts frmPaymentHistory::deleteTexts() const
{
    const auto *type = qobject_cast<const QComboBox *>(boundControl(QStringLiteral("PaymentsTypeID")));
    const QString description = basTendmark::GetFieldValue(madoPrimaryRS, QStringLiteral("PaymentDate")) + QLatin1Char(' ')
        + (type ? type->currentText() : QString());
    return {QStringLiteral("Are you sure you want to delete payment item '%1'?").arg(description), QStringLiteral("Delete Payment Item?"),
            QStringLiteral("Payment item '%1' deleted.").arg(description), QStringLiteral("Delete Payment Item")};
}
