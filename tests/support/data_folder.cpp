#include "support/data_folder.h"

#include "data/postgres/connection.h"
#include "data/server_address.h"
#include "shell/folder_files.h"

#include <QCoreApplication>

namespace molven::test {

namespace {

QString addressOf(const QString& database) {
    return firstLine(qEnvironmentVariable("MOLVEN_TEST_SERVER") + QStringLiteral("/address"))
        .value()
        .replace(QStringLiteral("%s"), database);
}

void onServer(const QString& sql) { postgres::Connection(addressOf(QStringLiteral("postgres"))).run(sql); }

} // namespace

bool DataFolder::isOnServer() { return !qEnvironmentVariableIsEmpty("MOLVEN_TEST_SERVER"); }

DataFolder::DataFolder(const DataFolder* original) {
    if (!isOnServer()) return;
    static int made = 0;
    name_ = QStringLiteral("test_%1_%2").arg(QCoreApplication::applicationPid()).arg(++made);
    address_ = addressOf(name_);
    if (original) // one that connections to are kept is not copied
        onServer(QStringLiteral("select pg_terminate_backend(pid) from pg_stat_activity where datname='%1'")
                     .arg(original->name_));
    onServer(QStringLiteral("create database %1 template %2")
                 .arg(name_, original ? original->name_ : QStringLiteral("template0")));
}

DataFolder::~DataFolder() {
    if (!name_.isEmpty()) onServer(QStringLiteral("drop database %1 with (force)").arg(name_));
}

QString DataFolder::filePath(const QString& name) const {
    return name_.isEmpty() ? folder_.filePath(name) : server_address::folder(address_) + name;
}

} // namespace molven::test
