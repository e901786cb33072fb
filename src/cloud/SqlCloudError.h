#pragma once

#include "cloud/CloudDatabase.h"

class QSqlError;

/// What an error of the database means, by SQLite's result code or PostgreSQL's SQLSTATE.
CloudError sqlCloudError(const QSqlError &error);
