#include "GridModel.h"

#include "SqlText.h"
#include "TmError.h"
#include "basDatabase.h"

#include <QSqlQuery>
#include <QSqlRecord>

namespace {
constexpr int kPageSize = 200;
constexpr int kPagesKept = 64;
} // namespace

GridModel::GridModel(QObject *parent) : QAbstractTableModel(parent) { m_columns = {Column{QString(), 300, {}}}; }

QList<GridModel::Column> GridModel::parseColumnSpec(const QString &spec)
{
    QList<Column> columns{Column{QString(), 300, {}}};
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
    m_sql.clear();
    m_count = 0;
    m_fieldNames.clear();
    m_pages.clear();
    m_pageAge.clear();
    m_allKeys.clear();
    endResetModel();
}

void GridModel::clear()
{
    beginResetModel();
    m_sql.clear();
    m_binds.clear();
    m_countSql.clear();
    m_count = 0;
    m_pages.clear();
    m_pageAge.clear();
    m_allKeys.clear();
    endResetModel();
}

void GridModel::runCount()
{
    const QString countFrom = m_countSql.isEmpty() ? m_sql : m_countSql;
    m_count = basDatabase::ScalarValue(QStringLiteral("SELECT COUNT(*) FROM (%1)").arg(countFrom), m_binds).toInt();
    QSqlQuery q = basDatabase::Execute(QStringLiteral("SELECT * FROM (%1) LIMIT 0").arg(m_sql), m_binds);
    const QSqlRecord rec = q.record();
    m_fieldNames.clear();
    for (int i = 0; i < rec.count(); ++i)
        m_fieldNames << rec.fieldName(i);
}

void GridModel::setQuery(const QString &sql, const QVariantList &binds, const QString &countSql)
{
    beginResetModel();
    m_sql = sql;
    m_binds = binds;
    m_countSql = countSql;
    m_sortColumn = 0;
    m_pages.clear();
    m_pageAge.clear();
    m_allKeys.clear();
    try {
        runCount();
    } catch (...) {
        m_sql.clear();
        m_count = 0;
        endResetModel();
        throw;
    }
    endResetModel();
}

void GridModel::refresh()
{
    if (m_sql.isEmpty())
        return;
    beginResetModel();
    m_pages.clear();
    m_pageAge.clear();
    m_allKeys.clear();
    runCount();
    endResetModel();
}

void GridModel::sortByColumn(int column, Qt::SortOrder order)
{
    beginResetModel();
    m_sortColumn = column;
    m_sortOrder = order;
    m_pages.clear();
    m_pageAge.clear();
    m_allKeys.clear();
    endResetModel();
}

QString GridModel::orderedSql() const
{
    QString sql = QStringLiteral("SELECT * FROM (%1)").arg(m_sql);
    if (m_sortColumn <= 0 || m_sortColumn >= m_fieldNames.size())
        return sql;
    // Shown dates (mm/dd/yyyy) sort by year first and amounts ($1,234.50) by value; the rest as they are.
    const QString c = SqlText::id(m_fieldNames.at(m_sortColumn));
    const QString key = QStringLiteral("CASE WHEN ") + c + QStringLiteral(" GLOB '[0-9][0-9]/[0-9][0-9]/[0-9][0-9][0-9][0-9]' THEN substr(")
                        + c + QStringLiteral(", 7, 4) || substr(") + c + QStringLiteral(", 1, 2) || substr(") + c
                        + QStringLiteral(", 4, 2) WHEN ") + c + QStringLiteral(" GLOB '[$(]*[0-9].[0-9][0-9]*' THEN CAST(replace(replace(replace(")
                        + c + QStringLiteral(", '$', ''), ',', ''), '(', '-') AS REAL) ELSE ") + c + QStringLiteral(" END");
    return sql + QStringLiteral(" ORDER BY ") + key + (m_sortOrder == Qt::AscendingOrder ? QStringLiteral(" ASC") : QStringLiteral(" DESC"));
}

const QVariantList *GridModel::rowValues(int row) const
{
    if (m_sql.isEmpty() || row < 0 || row >= m_count)
        return nullptr;
    const int page = row / kPageSize;
    auto it = m_pages.find(page);
    if (it == m_pages.end()) {
        QString sql = orderedSql();
        sql += QStringLiteral(" LIMIT %1 OFFSET %2").arg(kPageSize).arg(page * kPageSize);
        QVector<QVariantList> rows;
        try {
            QSqlQuery q = basDatabase::Execute(sql, m_binds);
            const int n = q.record().count();
            while (q.next()) {
                QVariantList values;
                values.reserve(n);
                for (int i = 0; i < n; ++i)
                    values << q.value(i);
                rows << values;
            }
        } catch (const TmError &) {
            return nullptr; // the database went away: show blanks rather than fail while painting
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
    if (m_sql.isEmpty())
        return -1;
    if (m_allKeys.isEmpty()) {
        QSqlQuery q = basDatabase::Execute(orderedSql(), m_binds);
        m_allKeys.reserve(m_count);
        while (q.next())
            m_allKeys << q.value(0).toLongLong();
    }
    return int(m_allKeys.indexOf(key));
}

void GridModel::removeDataRow(int row)
{
    if (row < 0 || row >= m_count)
        return;
    if (m_count == 1) {
        beginResetModel();
        m_count = 0;
        m_pages.clear();
        m_pageAge.clear();
        m_allKeys.clear();
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
    endRemoveRows();
}

int GridModel::rowCount(const QModelIndex &parent) const { return parent.isValid() ? 0 : qMax(1, m_count); }

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
