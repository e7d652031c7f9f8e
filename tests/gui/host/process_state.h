/// What a library may disturb in its host: signals, memory, threads, open files, the environment.
#pragma once

#include <string>

#include "json_line.h"

namespace testhost {

void ReportSignals(JsonLine& line);
/// Resident memory in kB and bytes in use on the heap.
void ReportMemory(JsonLine& line);
void ReportThreads(JsonLine& line);
void ReportFiles(JsonLine& line);
/// The process's locale, all categories, and its environment variables.
void ReportLocale(JsonLine& line);
void ReportEnvironment(JsonLine& line);
/// Whether the file is part of the process's memory map.
bool IsMapped(const std::string& path);
/// Makes the host ignore, handle or not handle the signal; `how` is ignore, handler or default.
void SetSignal(const std::string& name, const std::string& how);

}  // namespace testhost
