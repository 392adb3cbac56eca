#include "ReportDocument.h"

namespace Report {

const QList<CatalogueEntry> &catalogue()
{
    // The shown texts are marked for translation in the "Report" context.
    using K = RecordScope::Kind;
    static const QList<CatalogueEntry> entries = {
        {Name::ClientList, "client-list", Dialog::ByGrouped, K::Client, "Client", QT_TRANSLATE_NOOP("Report", "TendMark - Client List"),
         QT_TRANSLATE_NOOP("Report", "TendMark - Client List"), QT_TRANSLATE_NOOP("Report", "Client List Report"),
         QT_TRANSLATE_NOOP("Report", "No client has been selected.")},
        {Name::ClientDetail, "client-detail", Dialog::By, K::Client, "Client",
         QT_TRANSLATE_NOOP("Report", "TendMark - Client Detail Report"), nullptr, QT_TRANSLATE_NOOP("Report", "Client Detail Report"),
         QT_TRANSLATE_NOOP("Report", "No client has been selected.")},
        {Name::FoodService, "food-service", Dialog::ByClientAndDate, K::Client, "Client",
         QT_TRANSLATE_NOOP("Report", "TendMark - Food Service By Client"), nullptr,
         QT_TRANSLATE_NOOP("Report", "Food Service History By Client Report"), QT_TRANSLATE_NOOP("Report", "No client has been selected.")},
        {Name::PaymentHistory, "payment-history", Dialog::ByClientAndDate, K::Client, "Client",
         QT_TRANSLATE_NOOP("Report", "TendMark - Payment History By Client"), nullptr,
         QT_TRANSLATE_NOOP("Report", "Payment History By Client Report"), QT_TRANSLATE_NOOP("Report", "No client has been selected.")},
        {Name::GroceryLog, "grocery-log", Dialog::ByDate, K::None, "", QT_TRANSLATE_NOOP("Report", "TendMark - Grocery Log"), nullptr,
         nullptr, nullptr},
        {Name::GeographicSummary, "geographic-summary", Dialog::ByDate, K::None, "",
         QT_TRANSLATE_NOOP("Report", "TendMark - Geographic Summary Report"), nullptr, nullptr, nullptr},
        {Name::Demographics, "demographics", Dialog::ByDate, K::None, "", QT_TRANSLATE_NOOP("Report", "TendMark - Demographics Report"),
         nullptr, nullptr, nullptr},
        // The grouped volunteer list's caption has no blank, as it always had.
        {Name::VolunteerList, "volunteer-list", Dialog::ByGrouped, K::Volunteer, "Volunteer",
         QT_TRANSLATE_NOOP("Report", "TendMark - Volunteer List"), QT_TRANSLATE_NOOP("Report", "TendMark - VolunteerList"),
         QT_TRANSLATE_NOOP("Report", "Volunteer List Report"), QT_TRANSLATE_NOOP("Report", "No volunteer has been selected.")},
        {Name::VolunteerDetail, "volunteer-detail", Dialog::By, K::Volunteer, "Volunteer",
         QT_TRANSLATE_NOOP("Report", "TendMark - Volunteer Detail Report"), nullptr, QT_TRANSLATE_NOOP("Report", "Volunteer Detail Report"),
         QT_TRANSLATE_NOOP("Report", "No Volunteer has been selected.")},
        {Name::Agency, "agency", Dialog::Agency, K::None, "", QT_TRANSLATE_NOOP("Report", "TendMark - Agency Report"), nullptr, nullptr,
         nullptr},
    };
    return entries;
}

const CatalogueEntry *find(Name name)
{
    for (const CatalogueEntry &e : catalogue())
        if (e.name == name)
            return &e;
    return nullptr;
}

const CatalogueEntry *findByCliName(const QString &cliName)
{
    for (const CatalogueEntry &e : catalogue())
        if (cliName == QLatin1String(e.cliName))
            return &e;
    return nullptr;
}

}   // namespace Report
