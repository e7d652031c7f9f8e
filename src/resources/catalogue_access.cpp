#include "resources/catalogue_access.h"

#include <type_traits>

namespace zeldlg {

namespace {

// Guards the toolkit's process-wide translations object. May be used while the process exits.
std::shared_mutex g_catalogueMutex;
static_assert(std::is_trivially_destructible_v<std::shared_mutex>);

}  // namespace

CatalogueReader::CatalogueReader() : m_lock(g_catalogueMutex) {}

CatalogueWriter::CatalogueWriter() : m_lock(g_catalogueMutex) {}

bool CloseCatalogue() { return g_catalogueMutex.try_lock(); }

}  // namespace zeldlg
