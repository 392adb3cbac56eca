#include "frmFoodService.h"

#include "DataBinding.h"
#include "OptionsStore.h"
#include "Prompt.h"
#include "basDatabase.h"
#include "basErrorHandler.h"
#include "basTendmark.h"
#include "RecordQueries.h"

#include <QComboBox>
#include <QDateEdit>
#include <QGridLayout>
#include <QLineEdit>
#include <QPlainTextEdit>

frmFoodService::frmFoodService(Workspace *main, QWidget *parent) : RecordEditor(main, parent)
{
    setObjectName(QStringLiteral("frmFoodService"));
    setWindowTitle(tr("Food Service History"));
}

QString frmFoodService::query() const
{
    return RecordQueries::foodServices();
}

void frmFoodService::buildFields()
{
    const QString tag = QStringLiteral("R,Ex_Left,Ex_Top,Ex_Height,Ex_Font");
    auto *date = new QDateEdit;
    date->setDisplayFormat(QStringLiteral("MM/dd/yyyy"));
    date->setCalendarPopup(true);
    date->setMaximumWidth(130);
    addField(date, "dtpData", QStringLiteral("FoodServiceDate"), tag, 0, tr("Food Service Date"), 0);
    auto *type = new QComboBox;
    addField(type, "cboData", QStringLiteral("FoodServiceTypeID"), tag, 1, tr("Food Service Type"), 1);
    auto *bags = maskedBox(QStringLiteral("999"));
    bags->setMaximumWidth(60);
    addField(bags, "mskData", QStringLiteral("NumberOfBags"), tag, 2, tr("Number of bags"), 2);
    addField(new QPlainTextEdit, "txtData", QStringLiteral("Comments"), QStringLiteral("Ex_All"), 3, tr("Comments"), 3);
    fieldGrid()->setColumnStretch(1, 1);
}

bool frmFoodService::checkField(QWidget *control, const QString &column, const QString &value, const QString &caption)
{
    if (column == QLatin1String("NumberOfBags") && value.toInt() == 0)
        return refuse(control, tr("Data Entry Error"), tr("%1 cannot be zero.").arg(caption));
    return RecordEditor::checkField(control, column, value, caption);
}

// A second visit within the organisation's interval asks before it is saved.
bool frmFoodService::confirmCommit()
{
    int interval = 0;
    basErrorHandler::Guard(QStringLiteral("frmFoodService.confirmCommit"),
                           [&] { interval = OptionsStore::readOptions().foodVisitIntervalDays; });
    if (interval <= 0 || madoPrimaryRS.editMode() != Recordset::EditMode::Adding)
        return true;
    const QDate date = QDate::fromString(madoPrimaryRS.value(QStringLiteral("FoodServiceDate")).toString(), Qt::ISODate);
    if (!date.isValid())
        return true;
    const QDate last = RecordQueries::lastFoodService(ClientID().toLongLong(), date);
    if (!last.isValid())
        return true;
    const qint64 days = last.daysTo(date);
    if (days >= interval)
        return true;
    QString when;
    if (date == QDate::currentDate())
        when = days == 0 ? tr("today") : days == 1 ? tr("yesterday") : tr("%1 days ago").arg(days);
    else
        when = days == 0 ? tr("on the same day") : days == 1 ? tr("the day before") : tr("%1 days before").arg(days);
    return Prompt::message(
               tr("Recent Food Service"),
               tr("This client received food %1 (on %2). Save this food service anyway?").arg(when, basTendmark::FormatDate(last)),
               Prompt::Icon::Exclamation, Prompt::Yes | Prompt::No)
        == Prompt::Yes;
}

RecordEditor::DeleteTexts frmFoodService::deleteTexts() const
{
    const auto *type = qobject_cast<const QComboBox *>(boundControl(QStringLiteral("FoodServiceTypeID")));
    const QString description = basTendmark::GetFieldValue(madoPrimaryRS, QStringLiteral("FoodServiceDate")) + QLatin1Char(' ')
        + (type ? type->currentText() : QString());
    return {tr("Are you sure you want to delete food service item '%1'?").arg(description), tr("Delete Food Service Item?"),
            tr("Food service item '%1' deleted.").arg(description), tr("Delete Food Service Item")};
}
