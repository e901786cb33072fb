#pragma once

#include <QProcess>
#include <QTemporaryDir>

/// A PostgreSQL server of the test's own on loopback, stopped when it is destroyed. Its administrator is
/// `admin`, every password is the role's name.
class PostgresServer
{
public:
    PostgresServer();
    ~PostgresServer();

    void start();
    /// Ends the server at once, with all connections to it.
    void stop();
    /// Runs the statements as this role; what they print, or the error.
    QString run(const QString &role, const QString &sql) const;
    /// The address of its database for a role.
    QString url(const QString &role) const;

private:
    QTemporaryDir folder;
    QProcess server;
    int serverPort = 0;
};
