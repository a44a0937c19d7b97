// A drawing's component records as read: their texts, pins and attributes,
// which lie in the drawing's own pool and are found again by place.
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "project/ProjectUpdate.h"
#include "support/DxfSnippet.h"
#include "support/TempFolder.h"
#include "win/Utf8.h"

namespace {

using Pairs = std::vector<std::pair<std::string, std::string>>;

struct ExpectedContact {
  std::uint64_t handle;
  std::string coil, block, kind, reference;
  Pairs pins;        // code, term
  const char* xref;  // null: the contact has no XREF attribute
};

const ExpectedContact kContacts[] = {
    {0xA2, "K1", "HNO1", "NO", "104", {{"1", "13"}, {"2", "14"}}, nullptr},
    {0xA3, "K1", "HNC1", "NC", "", {{"1", "21"}, {"2", "22"}}, ""},
    {0xA4, "K22_450", "VFORMC", "NONC", "", {{"1", "11"}, {"3", "12"}, {"4", "14"}}, " S1:1.102"},
    {0xA5, "K1", "HNO1", "NC", "", {}, nullptr},
};

std::string Drawing() {
  return DxfSnippet("AC1009", "",
                    {{"A1", "HCR1", -2.5, {{"TAG1", "K1"}, {"XREF", ""}, {"XREFNO", "old"}}},
                     {"A2", "HNO1", -9.0, {{"TAG2", "K1"}, {"REF", "104"}, {"TERM01", "13"}, {"TERM02", "14"}}},
                     {"A3", "HNC1", -7.2, {{"TAG2", "K1"}, {"TERM02", "22"}, {"TERM01", "21"}, {"XREF", ""}}},
                     {"A4",
                      "VFORMC",
                      -0.5,
                      {{"TAG2", "K22_450"},
                       {"CONTACT", "ncno"},
                       {"TERM004", "14"},
                       {"TERM01", "11"},
                       {"TERM03", "12"},
                       {"XREF", " S1:1.102"}}},
                     {"A5", "HNO1", -1.0, {{"TAG2", "K1"}, {"CONTACT", "nc"}}}});
}

std::string Text(const DrawingComponents& drawing, PooledText text) { return Utf16ToUtf8(drawing.text(text)); }

void ExpectContacts(const DrawingComponents& drawing) {
  ASSERT_EQ(drawing.contacts.size(), std::size(kContacts));
  for (std::size_t i = 0; i < std::size(kContacts); ++i) {
    const ContactSymbol& contact = drawing.contacts[i];
    const ExpectedContact& expected = kContacts[i];
    SCOPED_TRACE(expected.handle);
    EXPECT_EQ(contact.handle, expected.handle);
    EXPECT_EQ(Text(drawing, contact.coilTag), expected.coil);
    EXPECT_EQ(Text(drawing, contact.blockName), expected.block);
    EXPECT_EQ(Text(drawing, contact.kind), expected.kind);
    EXPECT_EQ(Text(drawing, contact.place.reference), expected.reference);
    Pairs pins;
    for (const PooledPin& pin : drawing.pinsOf(contact))
      pins.emplace_back(Text(drawing, pin.code), Text(drawing, pin.term));
    EXPECT_EQ(pins, expected.pins);
    EXPECT_EQ(contact.hasXref, expected.xref != nullptr);
    if (expected.xref) {
      EXPECT_EQ(Text(drawing, contact.xref), expected.xref);
    }
  }
}

void ExpectCoil(const DrawingComponents& drawing) {
  ASSERT_EQ(drawing.coils.size(), 1u);
  const CoilSymbol& coil = drawing.coils[0];
  EXPECT_EQ(Text(drawing, coil.tag), "K1");
  EXPECT_EQ(Text(drawing, coil.blockName), "HCR1");
  Pairs attributes;
  for (const PooledAttribute& a : drawing.attributesOf(coil))
    attributes.emplace_back(Text(drawing, a.tag), Text(drawing, a.value));
  EXPECT_EQ(attributes, (Pairs{{"TAG1", "K1"}, {"XREF", ""}, {"XREFNO", "old"}}));
  EXPECT_FALSE(coil.xdata);
}

// Records name their texts by place in their drawing's pool, so copies of
// the drawing, moved on as the vector that holds them grows, read the same
// once the drawing they were copied from is gone.
TEST(DrawingComponents, RecordsReadTheSameInCopiesMovedAsTheirVectorGrows) {
  TempFolder folder;
  folder.makeFile("S1.dxf", Drawing());
  std::vector<DrawingComponents> copies;
  for (int i = 0; i < 33; ++i) {
    std::vector<DrawingComponents> read = ReadProjectComponents(DescribeFolder(folder.posix()), {});
    ASSERT_EQ(read.size(), 1u);
    ASSERT_TRUE(read[0].problems.empty());
    copies.push_back(read[0]);
  }
  for (const DrawingComponents& drawing : copies) {
    ExpectCoil(drawing);
    ExpectContacts(drawing);
  }
}

}  // namespace
