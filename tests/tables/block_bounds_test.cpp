// Stored definition blocks: lengths, decimals and key lengths a reader takes or refuses.
#include "tables/definition_block.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>

namespace {

using namespace zq::tables;

// A block of the ignored head and these pieces.
std::vector<uint8_t> block(std::initializer_list<std::string> pieces) {
    std::vector<uint8_t> bytes(kHeadSize, 0);
    for (const std::string &p : pieces) {
        bytes.insert(bytes.end(), p.begin(), p.end());
        bytes.push_back(0);
    }
    return bytes;
}

TEST(BlockBounds, NumbersBeyondWhatARecordHoldsAreRefused) {
    struct Case {
        const char *length, *decimals;
        bool taken;
    } tableCases[] = {
        {"15360", "0", true}, {"0", "15360", true},  {"15361", "0", false},
        {"-1", "0", false},   {"10", "-2", false},   {"2000000000", "0", false},
    };
    for (const Case &c : tableCases) {
        auto def = parseTableBlock(block({"T", "2", "0", "NAME", "2", c.length, c.decimals, "D_E_L_E_T_", "2", "2", "0"}));
        EXPECT_EQ(def.has_value(), c.taken) << c.length << "," << c.decimals;
        if (def && c.taken) {
            EXPECT_EQ(def->fields[0].length, std::stoi(c.length));
        }
    }
    struct KeyCase {
        const char *keyLength;
        bool taken;
    } indexCases[] = {{"15360", true}, {"0", true}, {"15361", false}, {"-1", false}, {"4000000000", false}};
    for (const KeyCase &c : indexCases) {
        auto index = parseIndexBlock(block({"TA", "1", c.keyLength, "0"}));
        EXPECT_EQ(index.has_value(), c.taken) << c.keyLength;
        if (index && c.taken) {
            EXPECT_EQ(index->attribute, uint32_t(std::stoul(c.keyLength)));
        }
    }
}

} // namespace
