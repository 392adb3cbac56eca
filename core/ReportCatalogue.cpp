#include "ReportDocument.h"

namespace Report {

const QList<CatalogueEntry> &catalogue()
{
    using K = RecordScope::Kind;
    static const QList<CatalogueEntry> entries = {
        {Name::ClientList, "client-list", Dialog::ByGrouped, K::Client, "Client", "TendMark - Client List", "TendMark - Client List",
         "Client List Report", "No client has been selected."},
        {Name::ClientDetail, "client-detail", Dialog::By, K::Client, "Client", "TendMark - Client Detail Report", nullptr,
         "Client Detail Report", "No client has been selected."},
        {Name::FoodService, "food-service", Dialog::ByClientAndDate, K::Client, "Client", "TendMark - Food Service By Client", nullptr,
         "Food Service History By Client Report", "No client has been selected."},
        {Name::PaymentHistory, "payment-history", Dialog::ByClientAndDate, K::Client, "Client", "TendMark - Payment History By Client",
         nullptr, "Payment History By Client Report", "No client has been selected."},
        {Name::GroceryLog, "grocery-log", Dialog::ByDate, K::None, "", "TendMark - Grocery Log", nullptr, nullptr, nullptr},
        {Name::GeographicSummary, "geographic-summary", Dialog::ByDate, K::None, "", "TendMark - Geographic Summary Report", nullptr,
         nullptr, nullptr},
        {Name::Demographics, "demographics", Dialog::ByDate, K::None, "", "TendMark - Demographics Report", nullptr, nullptr, nullptr},
        // The grouped volunteer list's caption has no blank, as it always had.
        {Name::VolunteerList, "volunteer-list", Dialog::ByGrouped, K::Volunteer, "Volunteer", "TendMark - Volunteer List",
         "TendMark - VolunteerList", "Volunteer List Report", "No volunteer has been selected."},
        {Name::VolunteerDetail, "volunteer-detail", Dialog::By, K::Volunteer, "Volunteer", "TendMark - Volunteer Detail Report", nullptr,
         "Volunteer Detail Report", "No Volunteer has been selected."},
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
