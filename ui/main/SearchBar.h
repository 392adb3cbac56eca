#pragma once

#include "MdiChild.h"

#include <QToolBar>

class QComboBox;
namespace SearchQueries {
struct Query;
}

// The search bar: a field of the active window's kind (clients or volunteers),
// the text to look for, and the Search button. It hands the record found over.
class SearchBar : public QToolBar
{
    Q_OBJECT

public:
    explicit SearchBar(QWidget *parent);

    // The active window's kind: the fields offered are those of clients or of volunteers.
    void setKind(MdiChild::Kind kind);
    // Whether the active window offers the search bar at all.
    void offer(bool enabled);
    void cmdSearch_Click();

Q_SIGNALS:
    void recordFound(MdiChild::Kind kind, const QString &id);

private:
    void AddSearchForItem();
    void SearchForClient();
    void SearchForVolunteer();
    void runSearch(const SearchQueries::Query &query, MdiChild::Kind kind);
    void updateSearchButton();

    QComboBox *m_cboSearchOn = nullptr;
    QComboBox *m_cboSearchFor = nullptr;
    QAction *m_search = nullptr;
    MdiChild::Kind m_kind = MdiChild::Kind::Other;
};
