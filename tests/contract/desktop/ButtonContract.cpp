// Push buttons, check boxes and option buttons.

#include <gtest/gtest.h>

#include "contract/desktop/controls/Button.h"
#include "tests/contract/desktop/ContractTools.h"

namespace tessel::test {

namespace {

void AButtonIsPressedByUserAndCode(ContractHost& host) {
  const auto window = ShowForm(host, "dlgText");
  auto& button = window->Find<Button>("cmdOK");
  int clicks = 0;
  button.Click = [&] { ++clicks; };
  host.Click(*window, "cmdOK");
  EXPECT_EQ(clicks, 1);
  button.Press();
  EXPECT_EQ(clicks, 2);
}

void ADisabledButtonIsNotPressed(ContractHost& host) {
  const auto window = ShowForm(host, "dlgText");
  auto& button = window->Find<Button>("cmdOK");
  int clicks = 0;
  button.Click = [&] { ++clicks; };
  button.SetEnabled(false);
  host.Click(*window, "cmdOK");
  button.Press();
  button.SetEnabled(true);
  button.SetVisible(false);
  button.Press();
  EXPECT_EQ(clicks, 0);
}

void CaptionsKeepTheirMarks(ContractHost& host) {
  const auto window = ShowForm(host, "dlgText");
  auto& button = window->Find<Button>("cmdOK");
  button.SetCaption("&Stop && go");
  EXPECT_EQ(button.Caption(), "&Stop && go");
}

void ACheckBoxClicksOnEveryChange(ContractHost& host) {
  const auto window = ShowForm(host, "frmText");
  auto& box = window->Find<CheckBox>("chkWordWrap");
  const bool before = box.Value();
  std::vector<bool> values;
  box.Click = [&] { values.push_back(box.Value()); };
  host.Click(*window, "chkWordWrap");
  EXPECT_EQ(values, std::vector{!before});
  box.SetValue(before);
  EXPECT_EQ(values, (std::vector{!before, before}));
  box.SetValue(before);
  EXPECT_EQ(values.size(), 2U) << "the same value raised Click";
}

void ADisabledCheckBoxIsChangedByCodeOnly(ContractHost& host) {
  const auto window = ShowForm(host, "frmText");
  auto& box = window->Find<CheckBox>("chkWordWrap");
  const bool before = box.Value();
  int clicks = 0;
  box.Click = [&] { ++clicks; };
  box.SetEnabled(false);
  host.Click(*window, "chkWordWrap");
  EXPECT_EQ(box.Value(), before);
  box.SetValue(!before);
  EXPECT_EQ(box.Value(), !before);
  EXPECT_EQ(clicks, 1);
}

void OneOptionIsChosen(ContractHost& host) {
  const auto window = ShowForm(host, "dlgCnODBC");
  auto& named = window->Find<OptionButton>("optDSN");
  auto& direct = window->Find<OptionButton>("optDSNLess");
  named.SetValue(true);
  Record record;
  named.Click = record.Noting("named");
  direct.Click = record.Noting("direct");
  host.Click(*window, "optDSNLess");
  EXPECT_TRUE(direct.Value());
  EXPECT_FALSE(named.Value());
  EXPECT_EQ(record.Take(), Seen{"direct"});
  named.SetValue(true);
  EXPECT_FALSE(direct.Value());
  EXPECT_EQ(record.Take(), Seen{"named"});
}

void AChosenOptionStaysSilent(ContractHost& host) {
  const auto window = ShowForm(host, "dlgCnODBC");
  auto& named = window->Find<OptionButton>("optDSN");
  named.SetValue(true);
  int clicks = 0;
  named.Click = [&] { ++clicks; };
  host.Click(*window, "optDSN");
  named.SetValue(true);
  EXPECT_TRUE(named.Value());
  named.SetValue(false);
  EXPECT_FALSE(named.Value());
  EXPECT_EQ(clicks, 0);
}

}  // namespace

std::vector<ContractCase> ButtonContract() {
  return {{"AButtonIsPressedByUserAndCode", &AButtonIsPressedByUserAndCode},
          {"ADisabledButtonIsNotPressed", &ADisabledButtonIsNotPressed},
          {"CaptionsKeepTheirMarks", &CaptionsKeepTheirMarks},
          {"ACheckBoxClicksOnEveryChange", &ACheckBoxClicksOnEveryChange},
          {"ADisabledCheckBoxIsChangedByCodeOnly", &ADisabledCheckBoxIsChangedByCodeOnly},
          {"OneOptionIsChosen", &OneOptionIsChosen},
          {"AChosenOptionStaysSilent", &AChosenOptionStaysSilent}};
}

}  // namespace tessel::test
