// What most tests include, compiled once for both test programs.
#pragma once

#include <gtest/gtest.h>
#include <wx/wx.h>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>
