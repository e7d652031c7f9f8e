// Texts are also composed on host threads, which must not look into a catalogue that the GUI
// thread is loading or releasing.
#pragma once

#include <mutex>
#include <shared_mutex>

namespace zeldlg {

/// Held by whoever translates outside the GUI thread.
class CatalogueReader {
public:
    CatalogueReader();
    CatalogueReader(const CatalogueReader&) = delete;
    CatalogueReader& operator=(const CatalogueReader&) = delete;

private:
    std::shared_lock<std::shared_mutex> m_lock;
};

/// Held by the GUI thread while the toolkit's translations object comes, goes and changes.
class CatalogueWriter {
public:
    CatalogueWriter();
    CatalogueWriter(const CatalogueWriter&) = delete;
    CatalogueWriter& operator=(const CatalogueWriter&) = delete;

private:
    std::unique_lock<std::shared_mutex> m_lock;
};

/// When the process exits: nobody translates outside the GUI thread any more, but waits until the
/// process is gone. Once. @return False while somebody still does.
bool CloseCatalogue();

}  // namespace zeldlg
