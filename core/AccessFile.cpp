#include "AccessFile.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QtEndian>

#include <mdbtools.h>

#include <cstring>
#include <vector>

namespace {

constexpr qint64 PageSize = 4096;
// A row's place on its page carries two flags: deleted (also set on the new place of a row
// that moved when it grew, so that a scan meets it once), and moved: the old place then
// holds the page and number of the new one.
constexpr int OffsetMask = 0x1fff;
constexpr int DeletedRow = 0x8000;
constexpr int MovedRow = 0x4000;
constexpr size_t MaxMemoBytes = size_t(1) << 28;

QString tr(const char *text)
{
    return QCoreApplication::translate("AccessFile", text);
}

MdbSource::Kind kindOf(int type)
{
    switch (type) {
    case MDB_TEXT:
        return MdbSource::Kind::Text;
    case MDB_MEMO:
        return MdbSource::Kind::Memo;
    case MDB_BYTE:
    case MDB_INT:
    case MDB_LONGINT:
        return MdbSource::Kind::Integer;
    case MDB_MONEY:
        return MdbSource::Kind::Money;
    case MDB_FLOAT:
    case MDB_DOUBLE:
        return MdbSource::Kind::Float;
    case MDB_DATETIME:
        return MdbSource::Kind::DateTime;
    case MDB_BOOL:
        return MdbSource::Kind::YesNo;
    default:
        return MdbSource::Kind::Other;
    }
}

// A text or memo value in UTF-8, as mdbtools decodes Jet's compressed UCS-2.
// The bytes of a memo's text, as its header counts them.
size_t memoLength(MdbHandle *mdb, const MdbField &field)
{
    return field.siz >= 4 ? size_t(mdb_get_int32(mdb->pg_buf, field.start)) & 0x3fffffff : 0;
}

// False when a value lies outside its page or is shorter than its type, or a memo claims an absurd length: a damaged row.
bool fits(MdbHandle *mdb, const MdbColumn *column, const MdbField &field)
{
    if (column->col_type == MDB_BOOL || field.is_null)
        return true;
    if (field.start < 0 || field.siz < 0 || field.start + field.siz > PageSize)
        return false;
    switch (column->col_type) {
    case MDB_BYTE:
        return field.siz >= 1;
    case MDB_INT:
        return field.siz >= 2;
    case MDB_LONGINT:
    case MDB_FLOAT:
        return field.siz >= 4;
    case MDB_MONEY:
    case MDB_DOUBLE:
    case MDB_DATETIME:
        return field.siz >= 8;
    case MDB_MEMO:
        return memoLength(mdb, field) <= MaxMemoBytes;
    default:
        return true;
    }
}

QString textValue(MdbHandle *mdb, const MdbField &field, int type)
{
    // Room for the text in UTF-8: at most two bytes for each byte Jet stores.
    const size_t stored = type == MDB_MEMO ? memoLength(mdb, field) : size_t(field.siz);
    mdb_set_bind_size(mdb, std::max<size_t>(MDB_BIND_SIZE, 2 * stored + 16));
    char *text = mdb_col_to_string(mdb, mdb->pg_buf, field.start, type, field.siz);
    const QString value = QString::fromUtf8(text ? text : "");
    g_free(text);
    return value.isNull() ? QStringLiteral("") : value;   // a zero-length text is not NULL
}

QVariant fieldValue(MdbHandle *mdb, const MdbColumn *column, const MdbField &field)
{
    if (column->col_type == MDB_BOOL)
        return QVariant(!field.is_null);   // Jet keeps yes/no in the row's null mask
    if (field.is_null)
        return {};
    const unsigned char *bytes = mdb->pg_buf + field.start;
    switch (column->col_type) {
    case MDB_TEXT:
    case MDB_MEMO:
        return textValue(mdb, field, column->col_type);
    case MDB_BYTE:
        return QVariant(qint64(bytes[0]));
    case MDB_INT:
        return QVariant(qint64(qFromLittleEndian<qint16>(bytes)));
    case MDB_LONGINT:
        return QVariant(qint64(qFromLittleEndian<qint32>(bytes)));
    case MDB_MONEY:
        return QVariant(qFromLittleEndian<qint64>(bytes));
    case MDB_FLOAT:
        return QVariant(double(qFromLittleEndian<float>(bytes)));
    case MDB_DOUBLE:
    case MDB_DATETIME:
        return QVariant(qFromLittleEndian<double>(bytes));
    default:
        return {};
    }
}

}   // namespace

struct AccessFile::Handle
{
    MdbHandle *mdb = nullptr;
    QStringList tables;
    QHash<QString, MdbCatalogEntry *> entries;   // of the user tables
    std::vector<std::unique_ptr<MdbCatalogEntry>> ownEntries;
    QHash<QString, MdbTableDef *> definitions;

    ~Handle()
    {
        for (MdbTableDef *table : std::as_const(definitions))
            mdb_free_tabledef(table);
        if (mdb)
            mdb_close(mdb);
    }
};

AccessFile::AccessFile(std::unique_ptr<Handle> handle) : m_handle(std::move(handle)) { }

AccessFile::~AccessFile() = default;

QString AccessFile::HeaderProblem(const QByteArray &firstPage, qint64 size)
{
    if (size == 0)
        return tr("The file is empty.");
    static const QByteArray magic("\x00\x01\x00\x00", 4);
    const bool jet = firstPage.startsWith(magic + QByteArray("Standard Jet DB", 16));
    const bool ace = firstPage.startsWith(magic + QByteArray("Standard ACE DB", 16));
    if (!jet && !ace)
        return tr("It is not an Access database.");
    const int version = firstPage.size() > 0x14 ? static_cast<unsigned char>(firstPage.at(0x14)) : -1;
    if (ace || version >= MDB_VER_ACCDB_2007)
        return tr("It is an Access 2007 or later (.accdb) database. Save it in Access as an Access 2000 database (.mdb) first.");
    if (version == MDB_VER_JET3)
        return tr("It is an Access 97 or older (Jet 3) database, which TendMark cannot read. "
                  "Open it in Access 2000 or later and convert it to an Access 2000 database first.");
    if (version != MDB_VER_JET4)
        return tr("It is not an Access database.");
    if (size < 3 * PageSize || size % PageSize != 0)
        return tr("The file is cut short: it is not a whole number of database pages, so part of it is missing.");
    return {};
}

std::unique_ptr<AccessFile> AccessFile::Open(const QString &path, QString *error)
{
    const QString shown = QDir::toNativeSeparators(path);
    const QFileInfo info(path);
    QFile file(path);
    if (!info.isFile() || !file.open(QIODevice::ReadOnly)) {
        *error = tr("The file '%1' cannot be read: it does not exist or you may not read it.").arg(shown);
        return nullptr;
    }
    const QString problem = HeaderProblem(file.read(PageSize), info.size());
    file.close();
    if (!problem.isEmpty()) {
        *error = tr("The file '%1' cannot be read. %2").arg(shown, problem);
        return nullptr;
    }
    auto handle = std::make_unique<Handle>();
    handle->mdb = mdb_open(QFile::encodeName(path).constData(), MDB_NOFLAGS);
    if (!handle->mdb) {
        *error = tr("The file '%1' cannot be read: it is damaged or not an Access database.").arg(shown);
        return nullptr;
    }
    if (qstrcmp(mdb_target_charset(handle->mdb), "UTF-8") != 0) {
        *error = tr("Texts would be read as %1 instead of UTF-8; unset the MDBICONV environment variable.")
                     .arg(QString::fromLatin1(mdb_target_charset(handle->mdb)));
        return nullptr;
    }
    std::unique_ptr<AccessFile> opened(new AccessFile(std::move(handle)));
    if (!opened->readCatalog()) {
        *error = tr("The file '%1' cannot be read: its list of tables is damaged or cut short.").arg(shown);
        return nullptr;
    }
    return opened;
}

// The user tables, from the list of the file's objects read as a table like any other: the
// catalog reader of mdbtools also parses every object's properties, on which a damaged
// file can make it crash. False when the list cannot be read whole.
bool AccessFile::readCatalog()
{
    Handle &h = *m_handle;
    const QString objectsName = QStringLiteral("MSysObjects");
    auto objects = std::make_unique<MdbCatalogEntry>();
    objects->mdb = h.mdb;
    objects->object_type = MDB_SYSTEM_TABLE;
    objects->table_pg = 2;   // always the second page
    qstrncpy(objects->object_name, "MSysObjects", sizeof objects->object_name);
    h.entries.insert(objectsName, objects.get());
    h.ownEntries.push_back(std::move(objects));
    MdbSource::Table shape;
    QString error;
    if (!describe(objectsName, &shape, &error))
        return false;
    const auto column = [&shape](const char *name) {
        for (int i = 0; i < shape.columns.size(); ++i)
            if (shape.columns.at(i).name == QLatin1String(name))
                return i;
        return -1;
    };
    const int id = column("Id");
    const int name = column("Name");
    const int type = column("Type");
    const int flags = column("Flags");
    if (id < 0 || name < 0 || type < 0 || flags < 0)
        return false;
    qint64 rows = 0;
    const bool ok = read(
        objectsName,
        [&](const QVariantList &values) {
            ++rows;
            const bool userTable = (values.at(type).toLongLong() & 0x7f) == MDB_TABLE && (values.at(flags).toLongLong() & 0x80000002) == 0;
            if (userTable && !values.at(name).toString().isEmpty()) {
                auto entry = std::make_unique<MdbCatalogEntry>();
                entry->mdb = h.mdb;
                entry->object_type = MDB_TABLE;
                entry->table_pg = static_cast<unsigned long>(values.at(id).toLongLong() & 0x00ffffff);
                qstrncpy(entry->object_name, values.at(name).toString().toUtf8().constData(), sizeof entry->object_name);
                h.tables << values.at(name).toString();
                h.entries.insert(h.tables.constLast(), entry.get());
                h.ownEntries.push_back(std::move(entry));
            }
            return true;
        },
        &error);
    h.entries.remove(objectsName);
    return ok && rows == shape.rows;
}

QStringList AccessFile::tables() const
{
    return m_handle->tables;
}

bool AccessFile::describe(const QString &table, MdbSource::Table *out, QString *error)
{
    MdbTableDef *definition = m_handle->definitions.value(table);
    if (!definition) {
        MdbCatalogEntry *entry = m_handle->entries.value(table);
        definition = entry ? mdb_read_table(entry) : nullptr;
        if (!definition || !mdb_read_columns(definition)) {
            if (definition)
                mdb_free_tabledef(definition);
            *error = tr("The definition of the table %1 cannot be read; the file is damaged.").arg(table);
            return false;
        }
        m_handle->definitions.insert(table, definition);
    }
    out->name = table;
    out->rows = definition->num_rows;
    out->columns.clear();
    for (guint i = 0; i < definition->num_cols; ++i) {
        const auto *column = static_cast<MdbColumn *>(g_ptr_array_index(definition->columns, i));
        out->columns.append({QString::fromUtf8(column->name), kindOf(column->col_type)});
    }
    return true;
}

bool AccessFile::read(const QString &table, const MdbSource::RowHandler &handler, QString *error)
{
    MdbSource::Table shape;
    if (!describe(table, &shape, error))
        return false;
    MdbTableDef *definition = m_handle->definitions.value(table);
    MdbHandle *mdb = m_handle->mdb;
    mdb_rewind_table(definition);
    QList<MdbField> fields(qMax<int>(int(definition->num_cols), MDB_MAX_COLS));
    QVariantList values(definition->num_cols);
    const auto damaged = [&] {
        *error = tr("A row of the table %1 cannot be read; the file is damaged.").arg(table);
        return false;
    };
    enum class Next { Go, Stop, Damaged };
    const auto handOver = [&](int start, size_t size) {
        // A row lies after the page's header and list of rows and ends within the page.
        const int rowsEnd = mdb->fmt->row_count_offset + 2 + 2 * mdb_get_int16(mdb->pg_buf, mdb->fmt->row_count_offset);
        if ((start & OffsetMask) < rowsEnd || size < 2 || qsizetype(start & OffsetMask) + qsizetype(size) > PageSize)
            return Next::Damaged;
        std::memset(fields.data(), 0, sizeof(MdbField) * fields.size());
        const int count = mdb_crack_row(definition, start & OffsetMask, size, fields.data());
        if (count < 0 || count < int(definition->num_cols))
            return Next::Damaged;
        for (guint i = 0; i < definition->num_cols; ++i) {
            const MdbField &field = fields.at(i);
            if (field.colnum < 0 || field.colnum >= int(definition->num_cols))
                return Next::Damaged;
            const auto *column = static_cast<MdbColumn *>(g_ptr_array_index(definition->columns, field.colnum));
            if (!fits(mdb, column, field))
                return Next::Damaged;
            values[field.colnum] = fieldValue(mdb, column, field);
        }
        return handler(values) ? Next::Go : Next::Stop;
    };
    while (mdb_read_next_dpg(definition)) {
        const int rows = mdb_get_int16(mdb->pg_buf, mdb->fmt->row_count_offset);
        for (int row = 0; row < rows; ++row) {
            int start = 0;
            size_t size = 0;
            if (mdb_find_row(mdb, row, &start, &size) != 0)
                return damaged();
            if (start & DeletedRow)
                continue;
            Next next = Next::Damaged;
            if (!(start & MovedRow)) {
                next = handOver(start, size);
            } else if (size >= 4) {
                // Read the row at its new place, then come back to the page being scanned.
                void *buffer = nullptr;
                int newStart = 0;
                size_t newSize = 0;
                if (mdb_find_pg_row(mdb, int(mdb_get_int32(mdb->pg_buf, start & OffsetMask)), &buffer, &newStart, &newSize) == 0) {
                    mdb_swap_pgbuf(mdb);
                    next = (newStart & MovedRow) ? Next::Damaged : handOver(newStart, newSize);
                }
                if (mdb_read_pg(mdb, definition->cur_phys_pg) != mdb->fmt->pg_size)
                    next = Next::Damaged;
            }
            if (next == Next::Damaged)
                return damaged();
            if (next == Next::Stop)
                return true;
        }
    }
    return true;
}
