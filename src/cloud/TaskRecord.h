#pragma once

#include "cloud/CloudDatabase.h"
#include "model/task.h"

/// The record type "Task" with its twenty fields.
const CloudRecordType &taskRecordType();

/// A new record without fields, under a random name (RFC 4122 UUID, version 4, upper case).
CloudRecord newTaskRecord();

/// Fills the record from the task. A colour that is held inverted is stored as it was chosen.
/// \param withKey  true for a new record; a fetched one keeps its key
void fillRecord(CloudRecord &record, const task &entry, bool withKey);

/// The record's task; its colour is inverted in dark appearance. For a field that the record lacks or that
/// holds another type, the task has what a blank one has, and a diagnostic line says so.
task taskOfRecord(const CloudRecord &record, const task &blank);
