#include "cam/database/exportdatabase.h"

#include "cam/base/error.h"
#include "cam/base/paths.h"

#include <filesystem>
#include <memory>

#include <sqlite3.h>

namespace cam {

namespace fs = std::filesystem;

namespace {

constexpr int waitForOthers = 5000; // milliseconds, when another program writes to the file

struct CloseDatabase
{
    void operator()(sqlite3 *database) const { sqlite3_close(database); }
};
using Database = std::unique_ptr<sqlite3, CloseDatabase>;

struct FinishStatement
{
    void operator()(sqlite3_stmt *statement) const { sqlite3_finalize(statement); }
};
using Statement = std::unique_ptr<sqlite3_stmt, FinishStatement>;

[[noreturn]] void fail(const std::string &path, sqlite3 *database)
{
    throw Error(path + ": " + (database ? sqlite3_errmsg(database) : "no memory for the database"));
}

Database open(const std::string &path, int mode)
{
    sqlite3 *opened = nullptr;
    const int result = sqlite3_open_v2(path.c_str(), &opened, mode, nullptr);
    Database database(opened);
    if (result != SQLITE_OK)
        fail(path, database.get());
    sqlite3_busy_timeout(database.get(), waitForOthers);
    return database;
}

Statement prepare(const std::string &path, sqlite3 *database, const char *sql)
{
    sqlite3_stmt *prepared = nullptr;
    if (sqlite3_prepare_v2(database, sql, -1, &prepared, nullptr) != SQLITE_OK)
        fail(path, database);
    return Statement(prepared);
}

void run(const std::string &path, sqlite3 *database, sqlite3_stmt *statement)
{
    if (sqlite3_step(statement) != SQLITE_DONE)
        fail(path, database);
}

// Binds values to the places of a statement, one after the other.
class Binder
{
public:
    explicit Binder(sqlite3_stmt *statement) : m_statement(statement) {}
    Binder &operator<<(const std::string &text)
    {
        sqlite3_bind_text(m_statement, ++m_place, text.c_str(), static_cast<int>(text.size()),
                          SQLITE_TRANSIENT);
        return *this;
    }
    Binder &operator<<(double number)
    {
        sqlite3_bind_double(m_statement, ++m_place, number);
        return *this;
    }
    Binder &operator<<(bool flag)
    {
        sqlite3_bind_int(m_statement, ++m_place, flag ? 1 : 0);
        return *this;
    }

private:
    sqlite3_stmt *m_statement;
    int m_place = 0;
};

// Takes the columns of a row, one after the other.
class Columns
{
public:
    explicit Columns(sqlite3_stmt *statement) : m_statement(statement) {}
    Columns &operator>>(std::string &text)
    {
        const auto *bytes = reinterpret_cast<const char *>(sqlite3_column_text(m_statement, m_place));
        const int size = sqlite3_column_bytes(m_statement, m_place++);
        text = bytes ? std::string(bytes, static_cast<size_t>(size)) : std::string();
        return *this;
    }
    Columns &operator>>(double &number)
    {
        number = sqlite3_column_double(m_statement, m_place++);
        return *this;
    }
    Columns &operator>>(bool &flag)
    {
        flag = sqlite3_column_int(m_statement, m_place++) != 0;
        return *this;
    }

private:
    sqlite3_stmt *m_statement;
    int m_place = 0;
};

bool hasTable(const std::string &path, sqlite3 *database, const std::string &name)
{
    const Statement find =
        prepare(path, database, "SELECT 1 FROM sqlite_master WHERE type = 'table' AND name = ?");
    Binder(find.get()) << name;
    const int result = sqlite3_step(find.get());
    if (result != SQLITE_ROW && result != SQLITE_DONE)
        fail(path, database);
    return result == SQLITE_ROW;
}

} // namespace

void saveExport(const std::string &path, const ExportRecord &record)
{
    const fs::path local = resolveIgnoringCase(path);
    std::error_code ignored; // the database says it better when it cannot be opened
    if (local.has_parent_path())
        fs::create_directories(local.parent_path(), ignored);
    const std::string file = local.u8string();
    const Database database = open(file, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
    const Statement create = prepare(
        file, database.get(),
        "CREATE TABLE IF NOT EXISTS exports (id INTEGER PRIMARY KEY, time TEXT DEFAULT CURRENT_TIMESTAMP, "
        "job TEXT, "
        "step TEXT, layer TEXT, format TEXT, file TEXT, dbu REAL, resize REAL, negative INTEGER, mirror "
        "INTEGER, "
        "rotate INTEGER, scale INTEGER, profile INTEGER, angle REAL, axis TEXT, x_scale REAL, y_scale REAL)");
    run(file, database.get(), create.get());
    const Statement insert = prepare(
        file, database.get(),
        "INSERT INTO exports (job, step, layer, format, file, dbu, resize, negative, mirror, rotate, scale, "
        "profile, angle, axis, x_scale, y_scale) VALUES (?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?)");
    Binder(insert.get()) << record.job << record.step << record.layer << record.format << record.file
                         << record.dbu << record.resize << record.isNegative << record.isMirror
                         << record.isRotate << record.isScale << record.isProfileTop << record.angle
                         << record.axis << record.xScale << record.yScale;
    run(file, database.get(), insert.get());
}

void saveVerdict(const std::string &path, const ExportRecord &record, bool isProven)
{
    const fs::path local = resolveIgnoringCase(path);
    std::error_code ignored; // what cannot be looked at is not there
    if (!fs::exists(local, ignored))
        return;
    const std::string file = local.u8string();
    const Database database = open(file, SQLITE_OPEN_READWRITE);
    if (!hasTable(file, database.get(), "exports"))
        return;
    const Statement create =
        prepare(file, database.get(),
                "CREATE TABLE IF NOT EXISTS verdicts (export INTEGER PRIMARY KEY, proven INTEGER NOT NULL)");
    run(file, database.get(), create.get());
    const Statement insert =
        prepare(file, database.get(),
                "INSERT OR REPLACE INTO verdicts (proven, export) SELECT ?, id FROM exports WHERE job = ? "
                "COLLATE NOCASE AND step = ? COLLATE NOCASE AND layer = ? COLLATE NOCASE AND format = ? "
                "ORDER BY id DESC LIMIT 1");
    Binder(insert.get()) << isProven << record.job << record.step << record.layer << record.format;
    run(file, database.get(), insert.get());
}

std::vector<SavedExport> readExports(const std::string &path, int most)
{
    const fs::path local = resolveIgnoringCase(path);
    std::error_code ignored; // what cannot be looked at is not there
    if (!fs::exists(local, ignored))
        return {};
    const std::string file = local.u8string();
    const Database database = open(file, SQLITE_OPEN_READONLY);
    if (!hasTable(file, database.get(), "exports"))
        return {};
    const bool hasVerdicts = hasTable(file, database.get(), "verdicts");
    const std::string sql = std::string("SELECT time, job, step, layer, format, file, dbu, resize, negative, "
                                        "mirror, rotate, scale, profile, angle, axis, x_scale, y_scale, ") +
                            (hasVerdicts ? "(SELECT proven FROM verdicts WHERE export = id)" : "NULL") +
                            " FROM exports ORDER BY id DESC LIMIT ?";
    const Statement select = prepare(file, database.get(), sql.c_str());
    sqlite3_bind_int(select.get(), 1, most);
    std::vector<SavedExport> rows;
    int result = sqlite3_step(select.get());
    for (; result == SQLITE_ROW; result = sqlite3_step(select.get())) {
        SavedExport row;
        ExportRecord &record = row.record;
        Columns(select.get()) >> row.time >> record.job >> record.step >> record.layer >> record.format >>
            record.file >> record.dbu >> record.resize >> record.isNegative >> record.isMirror >>
            record.isRotate >> record.isScale >> record.isProfileTop >> record.angle >> record.axis >>
            record.xScale >> record.yScale;
        const int verdict = sqlite3_column_count(select.get()) - 1;
        if (sqlite3_column_type(select.get(), verdict) != SQLITE_NULL)
            row.isProven = sqlite3_column_int(select.get(), verdict) != 0;
        rows.push_back(std::move(row));
    }
    if (result != SQLITE_DONE)
        fail(file, database.get());
    return rows;
}

} // namespace cam
