#pragma once

#include "KeysetPages.h"
#include "Query.h"

#include <QAbstractTableModel>
#include <QHash>
#include <QList>
#include <QMap>
#include <QVariant>

// The model behind every list grid. Column 0 is the narrow selector column;
// columns 1.. show the query's fields 1..; field 0 is the row's key, kept as
// row data and not shown. Rows are read page by page as they are scrolled to,
// so a list of a hundred thousand clients opens at once. A query with orders
// is read by seeking from the nearest row already seen (KeysetPages); others
// by OFFSET. An empty result still shows one blank row, whose key is 0.
class GridModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    struct Column
    {
        QString heading;
        int widthTwips = -1;   // -1: the grid's default width
        Qt::Alignment alignment;   // empty: the grid's default alignment
    };

    explicit GridModel(QObject *parent = nullptr);

    // "^ID,800|<Last Name,1400|City," as described for list grids. The specs in
    // the code are translated whole in the "ColumnHeadings" context, where a
    // translation changes the headings and keeps the marks and widths.
    void setColumnSpec(const QString &spec);
    const QList<Column> &columns() const { return m_columns; }   // including the selector column
    static QList<Column> parseColumnSpec(const QString &spec);

    // Runs the query; its countSql (optional) returns the same number of rows faster.
    void setQuery(const Query &query);
    void clear();
    void refresh();   // runs the same query again
    void sortByColumn(int column, Qt::SortOrder order);   // column as shown; 0 restores the query's order
    int sortColumn() const { return m_sortColumn; }
    Qt::SortOrder sortOrder() const { return m_sortOrder; }

    int dataRowCount() const { return m_count; }   // 0 when only the blank row shows
    qint64 rowKey(int row) const;
    QString text(int row, int column) const;
    QStringList fieldNames() const { return m_fieldNames; }
    int findKey(qint64 key) const;   // row of the key, or -1; with orders one count, not a read of the list
    void removeDataRow(int row);   // after its record was deleted

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

private:
    const QVariantList *rowValues(int row) const;
    Query orderedQuery() const;
    bool keysetOrder(KeysetPages::Order *order) const;   // false: the order is read by OFFSET
    QList<QVariantList> readKeysetPage(const KeysetPages::Order &order, int page) const;
    void forgetPages();
    void runCount();

    QList<Column> m_columns;
    Query m_query;
    int m_sortColumn = 0;
    Qt::SortOrder m_sortOrder = Qt::AscendingOrder;
    int m_count = 0;
    QStringList m_fieldNames;
    mutable QHash<int, QList<QVariantList>> m_pages;
    mutable QList<int> m_pageAge;
    mutable QList<qint64> m_allKeys;
    mutable QMap<int, QVariantList> m_anchors;   // a row's sort values by its position, in the current order
};
