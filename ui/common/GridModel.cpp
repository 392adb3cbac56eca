#include "GridModel.h"

#include "QueryPages.h"
#include "TmError.h"

#include <algorithm>

namespace {
constexpr int kPageSize = 200;
constexpr int kPagesKept = 64;
}   // namespace

GridModel::GridModel(QObject *parent) : QAbstractTableModel(parent)
{
    m_columns = {Column {QString(), 300, {}}};
}

QList<GridModel::Column> GridModel::parseColumnSpec(const QString &spec)
{
    QList<Column> columns {Column {QString(), 300, {}}};
    if (spec.isEmpty())
        return columns;
    for (const QString &entry : spec.split(QLatin1Char('|'))) {
        Column c;
        const int comma = entry.indexOf(QLatin1Char(','));
        QString heading = comma < 0 ? entry : entry.left(comma);
        const QString width = comma < 0 ? QString() : entry.mid(comma + 1).trimmed();
        if (heading.startsWith(QLatin1Char('<')))
            c.alignment = Qt::AlignLeft | Qt::AlignVCenter;
        else if (heading.startsWith(QLatin1Char('^')))
            c.alignment = Qt::AlignHCenter | Qt::AlignVCenter;
        else if (heading.startsWith(QLatin1Char('>')))
            c.alignment = Qt::AlignRight | Qt::AlignVCenter;
        if (c.alignment)
            heading.remove(0, 1);
        c.heading = heading;
        bool ok = false;
        const int w = width.toInt(&ok);
        c.widthTwips = ok ? w : -1;
        columns << c;
    }
    return columns;
}

void GridModel::setColumnSpec(const QString &spec)
{
    beginResetModel();
    m_columns = parseColumnSpec(spec);
    m_query = {};
    m_count = 0;
    m_fieldNames.clear();
    forgetPages();
    endResetModel();
}

void GridModel::forgetPages()
{
    m_pages.clear();
    m_pageAge.clear();
    m_allKeys.clear();
    m_anchors.clear();
}

void GridModel::clear()
{
    beginResetModel();
    m_query = {};
    m_count = 0;
    forgetPages();
    endResetModel();
}

void GridModel::runCount()
{
    m_count = QueryPages::count(m_query);
    m_fieldNames = QueryPages::fieldNames(m_query);
}

void GridModel::setQuery(const Query &query)
{
    beginResetModel();
    m_query = query;
    m_sortColumn = 0;
    forgetPages();
    try {
        runCount();
    } catch (...) {
        m_query = {};
        m_count = 0;
        endResetModel();
        throw;
    }
    endResetModel();
}

void GridModel::refresh()
{
    if (m_query.sql.isEmpty())
        return;
    beginResetModel();
    forgetPages();
    m_query.rows = -1;   // counted afresh: the rows may have changed
    runCount();
    endResetModel();
}

void GridModel::sortByColumn(int column, Qt::SortOrder order)
{
    beginResetModel();
    m_sortColumn = column;
    m_sortOrder = order;
    forgetPages();
    endResetModel();
}

bool GridModel::keysetOrder(KeysetPages::Order *order) const
{
    const bool sorted = m_sortColumn > 0 && m_sortColumn < m_fieldNames.size();
    order->terms = m_query.orders.value(sorted ? m_sortColumn : 0);
    order->descending = sorted && m_sortOrder == Qt::DescendingOrder;
    return !order->terms.isEmpty();
}

// Seeks from the nearest row whose sort values are known, forwards or backwards, passing over as few
// rows as it can: the list's ends are always known, so its first and last pages cost one seek, and a
// row known inside the page (a client gone to) splits the page into two seeks from it.
QList<QVariantList> GridModel::readKeysetPage(const KeysetPages::Order &order, int page) const
{
    const int start = page * kPageSize;
    const int end = qMin(start + kPageSize, m_count);
    const KeysetPages::Order backwards {order.terms, !order.descending};
    auto backwardsFrom = [&](const QVariantList &values, bool including, int skip, int rows) {
        KeysetPages::Page read = KeysetPages::read(m_query, backwards, values, including, skip, rows);
        std::reverse(read.rows.begin(), read.rows.end());
        std::swap(read.first, read.last);
        return read;
    };
    KeysetPages::Page read;
    auto inside = m_anchors.lowerBound(start);
    auto below = m_anchors.upperBound(start);
    const int forwardSkip = below == m_anchors.begin() ? start : start - std::prev(below).key();
    auto above = m_anchors.lowerBound(end - 1);
    const int backwardSkip = above == m_anchors.end() ? m_count - end : above.key() - (end - 1);
    if (forwardSkip > 0 && backwardSkip > 0 && inside != m_anchors.end() && inside.key() < end) {
        read = backwardsFrom(inside.value(), true, 0, inside.key() - start + 1);
        const KeysetPages::Page rest = KeysetPages::read(m_query, order, inside.value(), false, 0, end - inside.key() - 1);
        read.rows += rest.rows;
        if (!rest.rows.isEmpty())
            read.last = rest.last;
    } else if (forwardSkip <= backwardSkip) {
        read = below == m_anchors.begin() ? KeysetPages::read(m_query, order, {}, false, start, end - start)
                                          : KeysetPages::read(m_query, order, std::prev(below).value(), true, forwardSkip, end - start);
    } else {
        read = above == m_anchors.end() ? backwardsFrom({}, false, m_count - end, end - start)
                                        : backwardsFrom(above.value(), true, backwardSkip, end - start);
    }
    if (!read.rows.isEmpty()) {
        m_anchors.insert(start, read.first);
        m_anchors.insert(start + int(read.rows.size()) - 1, read.last);
    }
    return read.rows;
}

Query GridModel::orderedQuery() const
{
    const bool sorted = m_sortColumn > 0 && m_sortColumn < m_fieldNames.size();
    return QueryPages::sorted(m_query, sorted ? m_fieldNames.at(m_sortColumn) : QString(), m_sortOrder == Qt::AscendingOrder);
}

const QVariantList *GridModel::rowValues(int row) const
{
    if (m_query.sql.isEmpty() || row < 0 || row >= m_count)
        return nullptr;
    const int page = row / kPageSize;
    auto it = m_pages.find(page);
    if (it == m_pages.end()) {
        QList<QVariantList> rows;
        try {
            KeysetPages::Order order;
            rows = keysetOrder(&order) ? readKeysetPage(order, page) : QueryPages::page(orderedQuery(), page * kPageSize, kPageSize);
        } catch (const TmError &) {
            return nullptr;   // the database went away: show blanks rather than fail while painting
        }
        if (m_pages.size() >= kPagesKept && !m_pageAge.isEmpty())
            m_pages.remove(m_pageAge.takeFirst());
        it = m_pages.insert(page, rows);
        m_pageAge << page;
    }
    const int offset = row % kPageSize;
    return offset < it->size() ? &it->at(offset) : nullptr;
}

qint64 GridModel::rowKey(int row) const
{
    const QVariantList *values = rowValues(row);
    return values && !values->isEmpty() ? values->first().toLongLong() : 0;
}

QString GridModel::text(int row, int column) const
{
    const QVariantList *values = rowValues(row);
    if (!values || column < 1 || column >= values->size())
        return {};
    return values->at(column).toString();
}

int GridModel::findKey(qint64 key) const
{
    if (m_query.sql.isEmpty())
        return -1;
    // One count of the rows before the key's, on the order's index.
    KeysetPages::Order order;
    if (keysetOrder(&order)) {
        const QVariantList values = KeysetPages::valuesOf(m_query, order, key);
        if (values.isEmpty())
            return -1;
        const int row = KeysetPages::countBefore(m_query, order, values);
        if (row >= m_count)
            return -1;
        m_anchors.insert(row, values);
        return row;
    }
    if (m_allKeys.isEmpty())
        m_allKeys = QueryPages::keys(orderedQuery());
    return int(m_allKeys.indexOf(key));
}

void GridModel::removeDataRow(int row)
{
    if (row < 0 || row >= m_count)
        return;
    if (m_count == 1) {
        beginResetModel();
        m_count = 0;
        forgetPages();
        endResetModel();
        return;
    }
    beginRemoveRows({}, row, row);
    --m_count;
    const int firstPage = row / kPageSize;
    for (auto it = m_pages.begin(); it != m_pages.end();) {
        if (it.key() >= firstPage) {
            m_pageAge.removeAll(it.key());
            it = m_pages.erase(it);
        } else {
            ++it;
        }
    }
    m_allKeys.clear();
    m_anchors.erase(m_anchors.lowerBound(row), m_anchors.end());
    endRemoveRows();
}

int GridModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : qMax(1, m_count);
}

int GridModel::columnCount(const QModelIndex &parent) const
{
    if (parent.isValid())
        return 0;
    return int(qMax<qsizetype>(m_columns.size(), m_fieldNames.size()));
}

QVariant GridModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return {};
    if (role == Qt::DisplayRole || role == Qt::ToolTipRole) {
        if (index.column() == 0)
            return {};
        const QString t = text(index.row(), index.column());
        if (role == Qt::ToolTipRole && t.size() < 30)
            return {};
        return t;
    }
    if (role == Qt::TextAlignmentRole && index.column() < m_columns.size() && m_columns.at(index.column()).alignment)
        return int(m_columns.at(index.column()).alignment);
    if (role == Qt::UserRole && index.column() == 0)
        return rowKey(index.row());
    return {};
}

QVariant GridModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal)
        return QAbstractTableModel::headerData(section, orientation, role);
    if (role == Qt::DisplayRole)
        return section < m_columns.size() ? m_columns.at(section).heading : QString();
    if (role == Qt::TextAlignmentRole && section < m_columns.size() && m_columns.at(section).alignment)
        return int(m_columns.at(section).alignment);
    return {};
}
