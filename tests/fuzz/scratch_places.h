// Files of a configuration store in a directory of the process's own, in memory where there is a
// file system for that.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "registry/registry_places.h"

namespace zeldlg::fuzz {

class ScratchPlaces {
public:
    ScratchPlaces();
    ~ScratchPlaces();
    ScratchPlaces(const ScratchPlaces&) = delete;
    ScratchPlaces& operator=(const ScratchPlaces&) = delete;

    /// Everything below the directory; the environment has ZEL_HOME alone.
    registry::RegistryPlaces Places() const;

    std::string UserFile() const { return m_path + "/home/.tessaly/registry"; }
    std::string ShippedFile() const { return m_path + "/shipped/registry"; }

    // Nothing: no such file.
    void PutUser(const std::optional<std::string>& content) const;
    void PutShipped(const std::optional<std::string>& content) const;
    std::optional<std::string> User() const;
    std::optional<std::string> Shipped() const;

private:
    std::string m_path;
};

}  // namespace zeldlg::fuzz
