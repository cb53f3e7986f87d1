// The colours of the program: that they can be read, and whose they are.

#include "desktop/look/Tokens.h"

#include <QApplication>
#include <QStyle>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "desktop/look/Colors.h"
#include "desktop/look/theme/Theme.h"

namespace tessel::test {

namespace {

double ContrastOf(const QColor& a, const QColor& b) {
  return Contrast(FromQColor(a), FromQColor(b));
}

/// A desktop's palette of a few colours, as its settings name them.
QPalette DesktopPalette(const QColor& window, const QColor& base, const QColor& text,
                        const QColor& highlight) {
  QPalette palette(text, window, window.lighter(), window.darker(), window.darker(), text,
                   Qt::white, base, window);
  palette.setColor(QPalette::AlternateBase, base);
  palette.setColor(QPalette::Highlight, highlight);
  palette.setColor(QPalette::HighlightedText, Qt::white);
  palette.setColor(QPalette::Link, highlight);
  return palette;
}

QPalette PaleDesktop() {
  return DesktopPalette(QColor(0xEF, 0xF0, 0xF1), QColor(0xFF, 0xFF, 0xFF),
                        QColor(0x23, 0x26, 0x27), QColor(0x3D, 0xAE, 0xE9));
}

QPalette NightDesktop() {
  return DesktopPalette(QColor(0x2A, 0x2E, 0x32), QColor(0x1B, 0x1E, 0x20),
                        QColor(0xFC, 0xFC, 0xFC), QColor(0x3D, 0xAE, 0xE9));
}

/// Each pair of a text and a ground that some window shows, with the contrast it has.
struct Pair {
  std::string name;
  QColor text;
  QColor ground;
};

std::vector<Pair> PairsOf(const Tokens& t) {
  std::vector<Pair> pairs{{"text on selection", t.text, t.selection},
                          {"accent on window", t.accent, t.window},
                          {"accent on base", t.accent, t.base}};
  const std::vector<std::pair<std::string, QColor>> data{
      {"base", t.base}, {"alternate", t.alternate}, {"current row", t.currentRow}};
  for (const auto& [name, ground] : data) {
    pairs.push_back({"keyword on " + name, t.keyword, ground});
    pairs.push_back({"string on " + name, t.string, ground});
    pairs.push_back({"number on " + name, t.number, ground});
    pairs.push_back({"comment on " + name, t.comment, ground});
    pairs.push_back({"error on " + name, t.error, ground});
  }
  std::vector<std::pair<std::string, QColor>> all = data;
  all.emplace_back("window", t.window);
  all.emplace_back("ground", t.ground);
  for (const auto& [name, ground] : all) {
    pairs.push_back({"text on " + name, t.text, ground});
    pairs.push_back({"muted on " + name, t.muted, ground});
  }
  return pairs;
}

void ExpectReadable(const Tokens& tokens, const std::string& theme) {
  for (const Pair& pair : PairsOf(tokens))
    EXPECT_GE(ContrastOf(pair.text, pair.ground), readableContrast)
        << theme << ": " << pair.name << ", " << pair.text.name().toStdString() << " on "
        << pair.ground.name().toStdString();
}

TEST(TokensTest, EveryTextCanBeReadOnEveryGround) {
  ExpectReadable(LightTokens(), "light");
  ExpectReadable(DarkTokens(), "dark");
  ExpectReadable(TokensOfDesktop(PaleDesktop()), "a pale desktop");
  ExpectReadable(TokensOfDesktop(NightDesktop()), "a desktop at night");
}

TEST(TokensTest, WhatCannotBeReadIsToldFromWhatCan) {
  for (const Tokens& good : {LightTokens(), DarkTokens()}) {
    EXPECT_TRUE(AreReadable(good));
    Tokens bad = good;
    bad.muted = Blend(good.muted, good.base, 0.5);
    EXPECT_FALSE(AreReadable(bad)) << "muted";
    bad = good;
    bad.selection = Blend(good.selection, good.text, 0.7);
    EXPECT_FALSE(AreReadable(bad)) << "selection";
    bad = good;
    bad.comment = Blend(good.comment, good.base, 0.6);
    EXPECT_FALSE(AreReadable(bad)) << "comment";
  }
}

TEST(TokensTest, EdgesAndTheFocusRingAreSeen) {
  for (const Tokens& t : {LightTokens(), DarkTokens()}) {
    for (const QColor& ground : {t.window, t.base}) {
      EXPECT_GE(ContrastOf(t.edge, ground), 2.9) << ground.name().toStdString();
      EXPECT_GE(ContrastOf(t.accent, ground), 3.0) << ground.name().toStdString();
    }
  }
}

/// The toolkit's palette is where the colours are kept.
TEST(TokensTest, ThePaletteOfTheApplicationHoldsThem) {
  for (const Tokens& tokens : {LightTokens(), DarkTokens(), TokensOfDesktop(PaleDesktop())}) {
    QApplication::setPalette(PaletteOf(tokens));
    EXPECT_TRUE(CurrentTokens() == tokens);
  }
  QApplication::setPalette(QPalette());
}

TEST(ThemeTest, ThePaletteOfTheDesktopGoesFirst) {
  EXPECT_TRUE(TokensFor(PaleDesktop(), std::nullopt) == TokensOfDesktop(PaleDesktop()));
  EXPECT_TRUE(TokensFor(NightDesktop(), std::nullopt) == TokensOfDesktop(NightDesktop()));
  EXPECT_TRUE(TokensFor(NightDesktop(), Shade::Dark) == TokensOfDesktop(NightDesktop()));
  EXPECT_EQ(TokensFor(PaleDesktop(), Shade::Light).window, QColor(0xEF, 0xF0, 0xF1));
}

TEST(ThemeTest, TheProgramsOwnStandsInWhereThereIsNone) {
  EXPECT_TRUE(TokensFor(std::nullopt, std::nullopt) == LightTokens());
  EXPECT_TRUE(TokensFor(std::nullopt, Shade::Light) == LightTokens());
  EXPECT_TRUE(TokensFor(std::nullopt, Shade::Dark) == DarkTokens());
}

TEST(ThemeTest, TheProgramsOwnStandsInForTheWrongShade) {
  EXPECT_TRUE(TokensFor(PaleDesktop(), Shade::Dark) == DarkTokens());
  EXPECT_TRUE(TokensFor(NightDesktop(), Shade::Light) == LightTokens());
}

TEST(ThemeTest, TheProgramsOwnStandsInForAPaletteThatCannotBeRead) {
  const QPalette pale = DesktopPalette(Qt::white, Qt::white, QColor(0x99, 0x99, 0x99), Qt::blue);
  EXPECT_TRUE(TokensFor(pale, std::nullopt) == LightTokens());
  const QPalette dim = DesktopPalette(Qt::black, Qt::black, QColor(0x55, 0x55, 0x55), Qt::blue);
  EXPECT_TRUE(TokensFor(dim, std::nullopt) == DarkTokens());
}

}  // namespace

}  // namespace tessel::test
