#pragma once

#include <QDialog>

class QLineEdit;
class QListWidget;
class QTextBrowser;
class QTabWidget;

// The user's guide, built into the program: its pages on the right, on the left
// the keyword index with a filter box.
class frmHelp : public QDialog
{
    Q_OBJECT

public:
    explicit frmHelp(QWidget *parent = nullptr);

    void showContents();
    void showIndex();
    // Opens a page of the guide, optionally at an anchor: "clients.html#add-client".
    void showPage(const QString &page);
    QTextBrowser *browser() const { return m_browser; }

    struct Keyword
    {
        QString text;
        QString target;
    };
    static QList<Keyword> readKeywords(const QString &path = QStringLiteral(":/guide/keywords.txt"));

private:
    void filterIndex(const QString &text);
    void bringToFront();

    QTabWidget *m_tabs;
    QLineEdit *m_txtFilter;
    QListWidget *m_lstIndex;
    QTextBrowser *m_browser;
};
