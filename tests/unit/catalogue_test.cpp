#include <gtest/gtest.h>
#include <wx/log.h>
#include <wx/translation.h>

#include <cstring>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "resources/catalogue_check.h"
#include "runtime/handlers/delivery.h"
#include "support/catalogue_bytes.h"

namespace zeldlg {
namespace {

using test::GoodCatalogue;
using test::kCatalogueHeader;
using test::MakeCatalogue;

void SetWord(std::string& file, size_t offset, uint32_t value) {
    memcpy(file.data() + offset, &value, sizeof value);
}

// The same with the other byte order.
std::string Swapped(std::string file, size_t entries) {
    const size_t tables = 28 + 2 * entries * 8;
    for (size_t word = 0; word < tables; word += 4) {
        std::swap(file[word], file[word + 3]);
        std::swap(file[word + 1], file[word + 2]);
    }
    return file;
}

TEST(CatalogueCheck, AcceptsAGoodOneInBothByteOrders) {
    const std::string file = GoodCatalogue();
    EXPECT_TRUE(IsSoundCatalogue(file));
    EXPECT_TRUE(IsSoundCatalogue(Swapped(file, 3)));
}

TEST(CatalogueCheck, GivesEveryTextWithItsTranslationInBothByteOrders) {
    using Entries = std::vector<std::pair<std::string, std::string>>;
    const Entries expected = {
        {"", kCatalogueHeader}, {"Cancel", "Abbrechen"}, {"OK", "In Ordnung"}};
    for (const std::string& file : {GoodCatalogue(), Swapped(GoodCatalogue(), 3)}) {
        Entries found;
        ForEachTranslation(file, [&](std::string_view text, std::string_view translation) {
            found.emplace_back(text, translation);
        });
        EXPECT_EQ(found, expected);
    }
}

TEST(CatalogueCheck, RefusesOneWithoutTextsWhichTheToolkitWouldReadPastTheEndOf) {
    EXPECT_FALSE(IsSoundCatalogue(MakeCatalogue({})));
    EXPECT_TRUE(IsSoundCatalogue(MakeCatalogue({{"OK", "In Ordnung"}})));
}

TEST(CatalogueCheck, RefusesEveryTruncation) {
    const std::string file = GoodCatalogue();
    for (size_t size = 0; size < file.size(); ++size) {
        EXPECT_FALSE(IsSoundCatalogue(file.substr(0, size))) << size;
    }
}

TEST(CatalogueCheck, RefusesNumbersThatLeadOutOfTheFile) {
    for (const size_t offset : {0U, 8U, 12U, 16U, 28U, 32U, 52U, 56U}) {
        for (const uint32_t value : {0x7FFFFFFFU, 0xFFFFFFFFU, 0x10000U, 0xFFFFFFF8U}) {
            std::string file = GoodCatalogue();
            SetWord(file, offset, value);
            EXPECT_FALSE(IsSoundCatalogue(file)) << offset << " " << value;
        }
    }
}

TEST(CatalogueCheck, RefusesATextWithoutItsZeroByte) {
    std::string file = GoodCatalogue();
    file.back() = 'x';
    EXPECT_FALSE(IsSoundCatalogue(file));
}

TEST(CatalogueCheck, RefusesAPluralExpressionOfAnyDepth) {
    const std::string deep = "Plural-Forms: nplurals=2; plural=" + std::string(100000, '(') + "n\n";
    EXPECT_FALSE(IsSoundCatalogue(MakeCatalogue({{"", deep}})));
}

TEST(CatalogueCheck, APluralExpressionEndsWithItsLine) {
    const auto isSound = [](size_t length) {
        std::string line = "Plural-Forms: nplurals=2; plural=n";
        line.resize(length, ' ');
        return IsSoundCatalogue(MakeCatalogue({{"", line + "\n" + std::string(2000, '-')}}));
    };
    EXPECT_TRUE(isSound(1000));
    EXPECT_FALSE(isSound(1001));
}

TEST(CatalogueCheck, WhatPassesCanBeOpenedByTheToolkit) {
    const wxLogNull noMessages;
    const test::NoLeakCheck noLeakCheck;
    std::mt19937 random(20261120);
    int opened = 0;
    for (int round = 0; round < 20000; ++round) {
        std::string file = GoodCatalogue();
        for (int change = 0; change < 3; ++change) {
            file[random() % file.size()] = static_cast<char>(random());
        }
        if (IsSoundCatalogue(file)) {
            wxTranslations translations;
            translations.SetLoader(new test::BytesLoader(file));
            translations.SetLanguage("de");
            translations.AddCatalog("test");
            opened += translations.GetTranslatedString("Cancel") != nullptr ? 1 : 0;
        }
    }
    EXPECT_GT(opened, 1000);
}

struct SizedRow {
    uint32_t capacity;
    uint32_t result;
    const char* buffer;
};

class SizedText : public testing::TestWithParam<SizedRow> {};

TEST_P(SizedText, IsStoredWithItsZeroOrNotAtAll) {
    const auto& [capacity, result, expected] = GetParam();
    char buffer[8] = "xxxxxxx";
    uint32_t size = capacity;
    EXPECT_EQ(StoreSizedText<char>("abc", buffer, size), result);
    EXPECT_EQ(size, 4U);
    EXPECT_EQ(std::string(buffer, 7), std::string(expected, 7));
}

INSTANTIATE_TEST_SUITE_P(Capacities, SizedText,
                         testing::Values(SizedRow{0, ZELDLG_BUFFER_TOO_SMALL, "xxxxxxx"},
                                         SizedRow{3, ZELDLG_BUFFER_TOO_SMALL, "xxxxxxx"},
                                         SizedRow{4, ZELDLG_OK, "abc\0xxx"},
                                         SizedRow{7, ZELDLG_OK, "abc\0xxx"}));

TEST(SizedText, ANullBufferIsTooSmallForAnything) {
    uint32_t size = 100;
    EXPECT_EQ(StoreSizedText<wchar_t>(L"abc", nullptr, size), ZELDLG_BUFFER_TOO_SMALL);
    EXPECT_EQ(size, 4U);
}

}  // namespace
}  // namespace zeldlg
