#pragma once

#include "ReportDocument.h"

#include <functional>

class QWidget;
class Workspace;

// What every Reports menu command does: asks for the report's parameters in its
// dialog, checks that a current record exists when one is needed, builds the
// report with a cancellable progress window and shows it in a modal preview.
class ReportRunner
{
public:
    using Builder = std::function<Report::Result(const Report::Parameters &, const Report::Progress &)>;

    // builder: how reports are built (the database's own builders unless a test says otherwise).
    explicit ReportRunner(Builder builder = {});

    // active: the open form of the report's kind (kind None when there is none) with
    // its current statement and key. Returns true when the preview was shown.
    bool run(Report::Name name, const RecordScope::ActiveScope &active, QWidget *parent);

    // The open form a report of this kind covers: for clients the active client
    // window, for volunteers the volunteer window; kind None when there is none.
    static RecordScope::ActiveScope activeForm(const Workspace &workspace, RecordScope::Kind kind);
    // A Reports menu command, by its menu entry's name ("mnuReportsClientList").
    bool runMenuCommand(const QString &menuName, const Workspace &workspace, QWidget *parent);

private:
    bool askParameters(const Report::CatalogueEntry &entry, bool formFound, QWidget *parent, Report::Parameters *p);

    Builder m_build;
};
