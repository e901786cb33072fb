#pragma once

#include <QString>

/// Where the user's private cloud database is, as the desktop's cloud account says.
struct CloudHome
{
    enum class Kind {
        Embedded,   ///< an SQLite file of the user's own
        PostgreSql, ///< a server that the user's machines share
        SignedOut,
        Unusable, ///< the account's file does not say where
    };

    Kind kind = Kind::Embedded;
    QString file = {};     ///< of the embedded database
    QString user = {};     ///< empty: libpq's own choice, as for the other parts of the address
    QString host = {};     ///< empty: the local server's socket
    int port = -1;         ///< −1: the standard one
    QString database = {}; ///< on the server
    QString sslMode = {};  ///< libpq's sslmode
    QString problem = {};  ///< of an unusable account

    /// Reads the key `url` of the account's file: `postgresql://user@host:port/database?sslmode=…`, or
    /// `none`. Without file or key the database is embedded. A server that is not the local machine is spoken
    /// to over a verified connection only (sslmode verify-full), unless the address says otherwise.
    /// \param accountFile  an ini file; need not exist
    /// \param dataFolder  where the embedded database is
    static CloudHome read(const QString &accountFile, const QString &dataFolder);

    /// For diagnostics; there are no secrets in it.
    QString description() const;
};
