#pragma once

#include <QString>
#include <QTemporaryDir>

namespace molven::test {

/// Where a test's database files are made: a temporary folder, or a database of its own on the server that the
/// environment names (MOLVEN_TEST_SERVER, the folder of tests/server/server.sh). Gone with the test.
class DataFolder {
public:
    /// A copy of another one's database; an empty one without.
    explicit DataFolder(const DataFolder* original = nullptr);
    ~DataFolder();
    DataFolder(const DataFolder&) = delete;
    DataFolder& operator=(const DataFolder&) = delete;

    static bool isOnServer();
    /// The path of a database file.
    QString filePath(const QString& name) const;
    /// The address of the database; empty in a folder.
    const QString& address() const { return address_; }

private:
    QTemporaryDir folder_;
    QString name_, address_;
};

} // namespace molven::test
