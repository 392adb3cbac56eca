#include "Recordset.h"

#include "SqlText.h"
#include "TmError.h"
#include "basDatabase.h"

#include <QSet>

Recordset::Recordset(QObject *parent) : QObject(parent) { }

void Recordset::open(const QString &table, const QString &keyColumn, const QString &sql, const QVariantList &binds)
{
    close();
    m_table = table;
    m_keyColumn = keyColumn;
    m_sql = sql;
    m_binds = binds;
    m_fields = basDatabase::Fields(table);
    if (m_fields.isEmpty())
        throw TmError(3078, QStringLiteral("The table '%1' does not exist.").arg(table));
    m_open = true;
    loadKeys();
    m_pos = 0;
    loadRow();
}

void Recordset::close()
{
    m_open = false;
    m_keys.clear();
    m_index.clear();
    m_row.clear();
    m_changes.clear();
    m_editMode = EditMode::None;
    m_pos = -1;
}

void Recordset::loadKeys()
{
    // The inner query keeps its order: an outer select of one column over it is flattened by SQLite.
    QSqlQuery q = basDatabase::Execute(QStringLiteral("SELECT %1 FROM (%2)").arg(SqlText::id(m_keyColumn), m_sql), m_binds);
    m_keys.clear();
    m_index.clear();
    while (q.next())
        m_keys.append(q.value(0).toLongLong());
}

void Recordset::loadRow()
{
    m_row.clear();
    m_changes.clear();
    if (m_editMode == EditMode::Adding || m_pos < 0 || m_pos >= m_keys.size())
        return;
    QSqlQuery q = basDatabase::Execute(QStringLiteral("SELECT * FROM %1 WHERE %2 = ?").arg(SqlText::id(m_table), SqlText::id(m_keyColumn)),
                                       {m_keys.at(m_pos)});
    if (!q.next())
        return;   // deleted elsewhere: the row reads as empty
    const QSqlRecord rec = q.record();
    for (const FieldInfo &f : m_fields)
        m_row << q.value(rec.indexOf(f.name));
}

int Recordset::absolutePosition() const
{
    if (m_editMode == EditMode::Adding)
        return -1;
    if (m_pos < 0 || m_pos >= m_keys.size())
        return 0;
    return int(m_pos) + 1;
}

void Recordset::moveToIndex(qsizetype index)
{
    m_editMode = EditMode::None;
    m_pos = qBound<qsizetype>(-1, index, m_keys.size());
    loadRow();
    emit moveComplete();
}

void Recordset::moveFirst()
{
    moveToIndex(m_keys.isEmpty() ? m_keys.size() : 0);
}
void Recordset::moveLast()
{
    moveToIndex(m_keys.isEmpty() ? m_keys.size() : m_keys.size() - 1);
}

void Recordset::moveNext()
{
    const qsizetype from = m_editMode == EditMode::Adding ? m_posBeforeAdd : m_pos;
    moveToIndex(from + 1);
}

void Recordset::movePrevious()
{
    const qsizetype from = m_editMode == EditMode::Adding ? m_posBeforeAdd : m_pos;
    moveToIndex(from - 1);
}

void Recordset::moveTo(int position)
{
    moveToIndex(position - 1);
}

bool Recordset::find(const QVariant &key)
{
    bool ok = false;
    const qint64 k = key.toLongLong(&ok);
    if (!ok)
        return false;
    if (m_index.isEmpty() && !m_keys.isEmpty()) {
        m_index.reserve(m_keys.size());
        for (qsizetype i = 0; i < m_keys.size(); ++i)
            m_index.insert(m_keys.at(i), i);
    }
    const auto it = m_index.constFind(k);
    if (it == m_index.constEnd())
        return false;
    moveToIndex(*it);
    return true;
}

bool Recordset::findFirst(const QString &column, const QVariant &value)
{
    if (column.compare(m_keyColumn, Qt::CaseInsensitive) == 0)
        return find(value);
    const FieldInfo f = field(column);
    if (!f.isValid())
        throw TmError(3265, QStringLiteral("Item cannot be found in the collection: no column '%1'.").arg(column));
    QSqlQuery q = basDatabase::Execute(
        QStringLiteral("SELECT %1 FROM %2 WHERE %3 = ?").arg(SqlText::id(m_keyColumn), SqlText::id(m_table), SqlText::id(f.name)), {value});
    QSet<qint64> matches;
    while (q.next())
        matches.insert(q.value(0).toLongLong());
    for (qsizetype i = 0; i < m_keys.size(); ++i)
        if (matches.contains(m_keys.at(i))) {
            moveToIndex(i);
            return true;
        }
    return false;
}

QVariant Recordset::key() const
{
    if (m_editMode == EditMode::Adding || m_pos < 0 || m_pos >= m_keys.size())
        return {};
    return m_keys.at(m_pos);
}

int Recordset::columnIndex(const QString &column) const
{
    for (int i = 0; i < m_fields.size(); ++i)
        if (m_fields.at(i).name.compare(column, Qt::CaseInsensitive) == 0)
            return i;
    return -1;
}

FieldInfo Recordset::field(const QString &column) const
{
    const int i = columnIndex(column);
    return i < 0 ? FieldInfo() : m_fields.at(i);
}

QVariant Recordset::value(const QString &column) const
{
    const int i = columnIndex(column);
    if (i < 0)
        return {};
    const auto it = m_changes.constFind(i);
    if (it != m_changes.constEnd())
        return *it;
    return i < m_row.size() ? m_row.at(i) : QVariant();
}

void Recordset::setValue(const QString &column, const QVariant &storedValue)
{
    const int i = columnIndex(column);
    if (i < 0)
        throw TmError(3265, QStringLiteral("Item cannot be found in the collection: no column '%1'.").arg(column));
    if (!onRow())
        throw TmError(3021, QStringLiteral("Either BOF or EOF is True, or the current record has been deleted."));
    if (m_editMode == EditMode::None)
        m_editMode = EditMode::Editing;
    m_changes.insert(i, storedValue);
}

void Recordset::addNew()
{
    if (m_editMode != EditMode::Adding)
        m_posBeforeAdd = m_pos;
    m_editMode = EditMode::Adding;
    m_row.clear();
    m_changes.clear();
}

void Recordset::update()
{
    if (m_editMode == EditMode::None)
        return;
    QStringList columns;
    QVariantList binds;
    for (auto it = m_changes.constBegin(); it != m_changes.constEnd(); ++it) {
        columns << SqlText::id(m_fields.at(it.key()).name);
        binds << it.value();
    }
    if (m_editMode == EditMode::Adding) {
        QString sql;
        if (columns.isEmpty()) {
            sql = QStringLiteral("INSERT INTO %1 DEFAULT VALUES").arg(SqlText::id(m_table));
        } else {
            QStringList marks;
            for (int i = 0; i < columns.size(); ++i)
                marks << QStringLiteral("?");
            sql = QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
                      .arg(SqlText::id(m_table), columns.join(QStringLiteral(", ")), marks.join(QStringLiteral(", ")));
        }
        QSqlQuery q = basDatabase::Execute(sql, binds);
        const qint64 newKey = q.lastInsertId().toLongLong();
        m_keys.append(newKey);
        if (!m_index.isEmpty())
            m_index.insert(newKey, m_keys.size() - 1);
        m_pos = m_keys.size() - 1;
    } else if (!columns.isEmpty()) {
        for (QString &c : columns)
            c += QStringLiteral(" = ?");
        binds << m_keys.at(m_pos);
        basDatabase::Execute(QStringLiteral("UPDATE %1 SET %2 WHERE %3 = ?")
                                 .arg(SqlText::id(m_table), columns.join(QStringLiteral(", ")), SqlText::id(m_keyColumn)),
                             binds);
    }
    m_editMode = EditMode::None;
    loadRow();
}

void Recordset::cancelUpdate()
{
    if (m_editMode == EditMode::Adding) {
        moveToIndex(m_posBeforeAdd);
        return;
    }
    m_editMode = EditMode::None;
    m_changes.clear();
}

void Recordset::deleteCurrent()
{
    if (m_editMode == EditMode::Adding) {
        cancelUpdate();
        return;
    }
    if (m_pos < 0 || m_pos >= m_keys.size())
        throw TmError(3021, QStringLiteral("Either BOF or EOF is True, or the current record has been deleted."));
    basDatabase::Execute(QStringLiteral("DELETE FROM %1 WHERE %2 = ?").arg(SqlText::id(m_table), SqlText::id(m_keyColumn)),
                         {m_keys.at(m_pos)});
    m_keys.remove(m_pos);
    m_index.clear();
    m_editMode = EditMode::None;
    loadRow();
}

void Recordset::requery()
{
    m_editMode = EditMode::None;
    loadKeys();
    moveToIndex(0);
}

bool Recordset::rowExists(qint64 key) const
{
    QSqlQuery q
        = basDatabase::Execute(QStringLiteral("SELECT 1 FROM %1 WHERE %2 = ?").arg(SqlText::id(m_table), SqlText::id(m_keyColumn)), {key});
    return q.next();
}

void Recordset::resync()
{
    if (!m_open)
        return;
    const bool adding = m_editMode == EditMode::Adding;
    const qsizetype at = adding ? m_posBeforeAdd : m_pos;
    const bool wasOnRow = at >= 0 && at < m_keys.size();
    const qint64 current = wasOnRow ? m_keys.at(at) : 0;
    loadKeys();
    qsizetype pos = wasOnRow ? m_keys.indexOf(current) : (at < 0 ? -1 : m_keys.size());
    if (wasOnRow && pos < 0) {
        if (rowExists(current)) {
            m_keys.append(current);
            pos = m_keys.size() - 1;
        } else {
            pos = qMin(at, m_keys.size() - 1);
        }
    }
    if (adding) {
        m_posBeforeAdd = pos;
        return;
    }
    if (wasOnRow && pos >= 0 && m_keys.at(pos) == current) {
        // Still on its row: an edit under way stays, an untouched row shows what is stored now.
        m_pos = pos;
        if (m_editMode == EditMode::None)
            loadRow();
        return;
    }
    moveToIndex(pos);
}
