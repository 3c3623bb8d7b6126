// In place of the file of this name where the library is not there for the system: nothing can be
// opened, so that nothing else is ever called.

#include "analyse/sqlite_database.h"

namespace orvelin::tools {

Database::Database(std::string const& name, int) : name_(name) {
    fail();
}

Database::~Database() = default;

void Database::run(char const*) {
    fail();
}

void Database::fail() const {
    throw DatabaseError("cannot open " + name_ + ": this program was built without SQLite");
}

Statement::Statement(Database& database, std::string const&) : database_(database) {
    database_.fail();
}

Statement::~Statement() = default;

Statement& Statement::bind(std::int64_t) {
    return *this;
}

Statement& Statement::bind(double) {
    return *this;
}

Statement& Statement::bind(std::string_view) {
    return *this;
}

Statement& Statement::bind_null() {
    return *this;
}

bool Statement::step() {
    return false;
}

void Statement::reset() {}

std::int64_t Statement::number(int) const {
    return 0;
}

double Statement::real(int) const {
    return 0.0;
}

std::string Statement::text(int) const {
    return {};
}

bool Statement::is_null(int) const {
    return true;
}

int Statement::columns() const {
    return 0;
}

}  // namespace orvelin::tools
