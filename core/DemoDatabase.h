#pragma once

#include <QString>

// The demo database: made-up households in the per-user data folder, created on first use.
namespace DemoDatabase {

QString Path();
// Creates the file when it does not exist yet; false with *error when that fails.
bool Ensure(QString *error);

}   // namespace DemoDatabase
