#include "tests/desktop/Screenshots.h"

#include <cmath>

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QMainWindow>
#include <QTest>
#include <iostream>
#include <memory>
#include <vector>

#include "contract/desktop/controls/Button.h"
#include "contract/desktop/controls/ChartBox.h"
#include "contract/desktop/controls/DataGrid.h"
#include "contract/desktop/controls/EditorBox.h"
#include "contract/desktop/controls/Label.h"
#include "contract/desktop/controls/ListControls.h"
#include "contract/desktop/controls/ListView.h"
#include "contract/desktop/controls/TextBox.h"
#include "contract/desktop/controls/TreeView.h"
#include "contract/desktop/controls/values/HexBox.h"
#include "contract/desktop/controls/values/ImageBox.h"
#include "desktop/QtDesktop.h"
#include "desktop/base/Text.h"
#include "desktop/dialogs/MessageDialog.h"
#include "desktop/grid/RecordGrid.h"
#include "desktop/look/theme/Theme.h"
#include "logic/results/TopRow.h"
#include "tests/desktop/QtUser.h"
#include "tests/desktop/grid/GeneratedRows.h"

namespace tessel::test {

namespace {

constexpr const char* sampleSql = "-- orders of one customer\n"
                                  "SELECT o.id, o.\"placed\", SUM(l.amount) AS total\n"
                                  "FROM orders o JOIN order_lines l ON l.order_id = o.id\n"
                                  "WHERE o.customer = 'Ada Lovelace' AND total > 12.5\n"
                                  "GROUP BY o.id; /* a comment of\n   two lines */\n";

class Album {
 public:
  Album(const std::string& folder, QtDesktop& desktop) : folder_(ToQt(folder)), desktop_(desktop) {
    QDir().mkpath(folder_);
  }

  void DrawAll() {
    DrawEmptyFrame();
    DrawFrame();
    DrawDialogs();
    DrawMessages();
  }

 private:
  void Save(QWidget& widget, const QString& name) {
    QTest::qWait(100);
    widget.grab().save(folder_ + QLatin1Char('/') + name + QStringLiteral(".png"));
    std::cout << name.toStdString() << ' ' << widget.width() << 'x' << widget.height() << '\n';
  }

  void Draw(const std::string& form, const std::function<void(Window&)>& fill) {
    const auto window = desktop_.MakeWindow(form);
    fill(*window);
    window->Show();
    Save(AsQt(*window).Outer(), ToQt(form));
  }

  void FillSidebar(Window& frame) {
    auto& tree = frame.Find<TreeView>("trvBrowser");
    tree.Add("", {"d1", "Shop", 1, false});
    tree.SetMark("d1", 0xA0D060);
    tree.Add("d1", {"t1", "customers", 2});
    tree.Add("d1", {"t2", "orders", 2});
    tree.AddChildren("t2", {{"f1", "id", 3}, {"f2", "customer", 3}, {"f3", "Order Date", 3}});
    tree.SetChecked("f2", true);
    tree.SetExpanded("d1", true);
    tree.SetExpanded("t2", true);
    tree.SelectNode("t2");
    auto& tags = frame.Find<ListView>("lsvTags");
    tags.Insert(0, {"CUSTOMER", "Customer", {"Ada Lovelace"}, "", 0});
    tags.Insert(1, {"YEAR", "Year", {"2026"}, "", 0});
    tags.SetColumnWidth(0, 1200);
  }

  /// As its window does.
  void PlaceRecords(Window& window, TopRow& row) {
    const int lowered = row.Place(window.ScaleWidth());
    const int width = window.ScaleWidth() - 120;
    window.Find<Control>("txtStatus").SetBounds({60, 420 + lowered, width, 330});
    const int top = 840 + lowered;
    window.Find<Control>("DataGrid").SetBounds({60, top, width, window.ScaleHeight() - 60 - top});
  }

  void FillRecords(Window& window) {
    window.SetCaption("Shop");
    window.SetMark(0xA0D060);
    auto& status = window.Find<TextBox>("txtStatus");
    status.SetText("[15:09:26]  1000000 record(s).");
    status.SetBackColor(0xBF0000);
    for (const char* name : {"cmdAccept", "cmdReject", "cboCatalog", "lblTimer", "cmdCnErrors"})
      window.Find<Control>(name).SetVisible(true);
    for (const char* name : {"cmdHistoryBack", "cmdRequery", "cmdProperties", "chkRecords"})
      window.Find<Control>(name).SetEnabled(true);
    window.Find<Label>("lblTimer").SetCaption("00:00:07");
    window.Find<ComboBox>("cboCatalog").AddItem("shop");
    window.Find<ComboBox>("cboCatalog").SetListIndex(0);
    auto& again = window.Find<Button>("cmdRequeryTags");
    again.SetVisible(true);
    again.SetBackColor(0x00FF00);
    auto& grid = window.Find<DataGrid>("DataGrid");
    grid.SetDataSource(OrdersOf(1'000'000));
    grid.SetVisible(true);
    auto& transaction = window.Find<Label>("lblTransaction");
    transaction.SetCaption("In transaction since 14:05");
    transaction.SetBackColor(0x00BFFF);
    transaction.SetForeColor(0x000000);
    transaction.SetVisible(true);
  }

  /// A first start, as it looks before anything is connected.
  void DrawEmptyFrame() {
    const auto frame = desktop_.MakeWindow("frmMDI");
    frame->SetBounds({0, 0, 15360, 11520});
    frame->SetGroundText("No database yet. Database > Connect... (Alt+D, C)");
    frame->Show();
    const auto query = desktop_.MakeWindow("frmMain");
    query->Show();
    auto& hint = query->Find<Label>("lblHint");
    hint.SetCaption("No database yet. Database > Connect... (Alt+D, C)");
    hint.SetVisible(true);
    query->SetBounds({300, 300, 9000, 4500});
    SettleEvents();
    Save(AsQt(*frame).Outer(), QStringLiteral("frmMDI-empty"));
    frame->Find<TreeView>("trvBrowser").Add("", {"d1", "Shop", 1, false});
    frame->SetTabbed(true);
    const auto records = desktop_.MakeWindow("frmRecords");
    const auto others = desktop_.MakeWindow("frmRecords");
    records->SetCaption("Shop");
    records->SetMark(0xA0D060);
    others->SetCaption("Staff [read-only]");
    others->SetMark(0x0000C0);
    records->Show();
    others->Show();
    frame->Arrange(Tiling::Horizontal);
    SettleEvents();
    Save(AsQt(*frame).Outer(), QStringLiteral("frmMDI-tabs"));
  }

  void DrawFrame() {
    const auto frame = desktop_.MakeWindow("frmMDI");
    frame->SetBounds({0, 0, 16800, 10500});
    frame->Show();
    FillSidebar(*frame);
    const auto query = desktop_.MakeWindow("frmMain");
    query->SetCaption("SQL [orders.sql *]");
    query->Show();
    query->Find<RichTextBox>("txtQuery").SetText(sampleSql);
    auto& options = query->Find<ListBox>("lstOptions");
    for (const char* name : {"customer", "order_date", "order_id"}) options.AddItem(name);
    options.SetListIndex(1);
    const auto records = desktop_.MakeWindow("frmRecords");
    TopRow row(*records);
    records->Show();
    SettleEvents();
    frame->Arrange(Tiling::Horizontal);
    SettleEvents();
    FillRecords(*records);
    row.ShowRow(RowText(records->Find<DataGrid>("DataGrid")));
    PlaceRecords(*records, row);
    Save(AsQt(*frame).Outer(), QStringLiteral("frmMDI"));
    auto& grid = *AsQt(*records).Root().findChild<RecordGrid*>(QStringLiteral("DataGrid"));
    grid.Selection().SetRows({1002, 1005});
    grid.ShowSelection();
    records->Find<DataGrid>("DataGrid").SetBackColor(0xD0FFFF);
    records->Find<DataGrid>("DataGrid").SetForeColor(0x600000);
    Save(AsQt(*records).Root(), QStringLiteral("frmRecords"));
    grid.Selection().PressColumn(1, true, false);
    grid.Selection().DragToColumn(2);
    grid.ShowSelection();
    query->Activate();
    options.SetBounds({1500, 1500, 2400, 1200});
    options.SetVisible(true);
    Save(AsQt(*query).Root(), QStringLiteral("frmMain"));
    frame->Arrange(Tiling::Vertical);
    SettleEvents();
    PlaceRecords(*records, row);
    Save(AsQt(*frame).Outer(), QStringLiteral("frmMDI-vertical"));
    records->Find<DataGrid>("DataGrid").SetDataSource(nullptr);
  }

  /// The window of a value as bytes, as a picture and as indented text.
  void DrawValues() {
    std::vector<std::byte> bytes(1000);
    for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<std::byte>(i * 7);
    DrawValue("hexValue", "hex", [&](Window& window) {
      auto& box = window.Find<HexBox>("hexValue");
      box.SetSource([&] { return std::span<const std::byte>(bytes); });
      box.Select(35, 20);
      window.Find<Label>("lblValue").SetCaption("Binary, 1000 bytes; byte 54 (0x36), 20 selected");
    });
    QFile picture(QStringLiteral(":/icons/tessel.svg"));
    const QByteArray drawing = picture.open(QIODevice::ReadOnly) ? picture.readAll() : QByteArray();
    DrawValue("imgValue", "picture", [&](Window& window) {
      window.Find<ImageBox>("imgValue").SetPicture(std::as_bytes(std::span(drawing)));
      window.Find<Label>("lblValue").SetCaption("SVG picture");
    });
    DrawValue("txtValue", "json", [](Window& window) {
      auto& text = window.Find<EditorBox>("txtValue");
      text.SetSyntax(TextSyntax::Json);
      text.SetText(
          "{\n  \"name\": \"Ada\",\n  \"born\": 1815,\n  \"tags\": [\n    true,\n    null\n"
          "  ]\n}");
      window.Find<Label>("lblValue").SetCaption("JSON text, 60 bytes");
    });
  }

  void DrawValue(const char* shown, const char* name, const std::function<void(Window&)>& fill) {
    const auto window = desktop_.MakeWindow("frmValue");
    window->SetCaption("orders.picture, row 3");
    for (const char* box : {"hexValue", "imgValue", "txtValue"})
      window->Find<Control>(box).SetVisible(std::string_view(box) == shown);
    window->Show();
    fill(*window);
    QTest::qWait(300);
    Save(AsQt(*window).Outer(), QStringLiteral("frmValue-") + QLatin1String(name));
    window->Find<HexBox>("hexValue").SetSource(nullptr);
  }

  void DrawDialogs() {
    Draw("frmText", [](Window& window) {
      window.SetBounds({0, 0, 9600, 6300});
      window.Find<RichTextBox>("txtText").SetText(sampleSql);
    });
    DrawValues();
    Draw("dlgText", [](Window& window) {
      window.Find<Label>("lblPrompt").SetCaption("Table name:-");
      window.Find<TextBox>("txtText").SetText("orders");
    });
    Draw("dlgWindows", [](Window& window) {
      auto& list = window.Find<ListBox>("lstWindows");
      for (const char* name : {"SQL [orders.sql]", "Shop", "Staff"}) list.AddItem(name);
      list.SetListIndex(1);
    });
    Draw("dlgConnect", [](Window& window) {
      auto& list = window.Find<ListView>("lsvConnections");
      list.Insert(0, {"new", "(new)", {""}, "", 0});
      list.Insert(1,
                  {"", "Shop", {"Provider=SQLite;Data Source=/srv/data/shop.db"}, "", 0, 0x0000C0});
      list.Insert(2, {"", "Staff", {"Provider=PostgreSQL;Server=db;Database=staff"}, "", 0});
      list.SetSelectedIndex(1);
      list.SetColumnWidth(0, 2400);
      window.Find<TextBox>("txtCaption").SetText("Shop");
      window.Find<TextBox>("txtCnStr").SetText("Provider=SQLite;Data Source=/srv/data/shop.db");
      window.Find<Label>("labColor").SetBackColor(0xC0FFFF);
      window.Find<Label>("labColor").SetForeColor(0x0000C0);
    });
    Draw("dlgAsync", [](Window& window) {
      window.Find<Label>("lblMessage").SetCaption("Fetching records...\n1204000");
      window.Find<Label>("lblTimer").SetCaption("00:00:07");
      window.Find<ProgressBar>("prgProgress").SetValue(40);
    });
    Draw("dlgRunAll", [](Window& window) {
      auto& list = window.Find<ListView>("lsvRuns");
      list.Insert(0, {"", "Shop", {"Done", "400", "00:00:01", ""}, "", 0});
      list.Insert(1,
                  {"", "Staff", {"Fetching records...", "1204000", "00:00:07", "Cancel"}, "", 0});
      list.SetSelectedIndex(1);
      window.Find<Label>("lblMessage").SetCaption("1 of 2 connections have ended.");
    });
    Draw("dlgCompare", [](Window& window) {
      for (const char* name : {"cboA", "cboB"}) {
        window.Find<ComboBox>(name).AddItem("Shop");
        window.Find<ComboBox>(name).SetListIndex(0);
      }
      auto& keys = window.Find<TreeView>("trvKeys");
      keys.AddChildren("", {{"0", "id"}, {"1", "customer"}, {"2", "placed"}});
      keys.SetChecked("0", true);
    });
    Draw("dlgExport", [](Window& window) {
      const std::pair<const char*, const char*> entries[] = {
          {"cboWhat", "All rows: 1204000 records"},
          {"cboFormat", "CSV, text with delimiters"},
          {"cboDelimiter", "Comma  ,"},
          {"cboQuotes", "Around all but NULL"},
          {"cboEncoding", "UTF-8 with mark"},
          {"cboLineEnd", "CR LF"},
          {"cboNull", "(nothing)"},
          {"cboDecimal", "Point  ."},
          {"cboBinary", "Hexadecimal, 0x..."},
          {"cboDatabase", "PostgreSQL"}};
      for (const auto& [name, entry] : entries) {
        window.Find<ComboBox>(name).AddItem(entry);
        window.Find<ComboBox>(name).SetListIndex(0);
      }
      window.Find<TextBox>("txtFile").SetText("/home/me/orders.csv");
      for (const char* name : {"cboDatabase", "txtTable", "txtBatch", "chkCreate"})
        window.Find<Control>(name).SetEnabled(false);
    });
    Draw("dlgImport", [](Window& window) {
      window.Find<TextBox>("txtSource").SetText("/srv/data/orders.csv");
      for (const auto& [box, text] : {std::pair{"cboDelimiter", "Comma"},
                                      {"cboEncoding", "UTF-8"},
                                      {"cboDecimal", "."},
                                      {"cboType", "Exact number"}}) {
        window.Find<ComboBox>(box).AddItem(text);
        window.Find<ComboBox>(box).SetListIndex(0);
      }
      window.Find<CheckBox>("chkHeader").SetValue(true);
      window.Find<ComboBox>("cboTable").SetText("orders");
      window.Find<Label>("lblKnown").SetCaption("will be made");
      auto& list = window.Find<ListView>("lsvColumns");
      list.Insert(0, {"", "id", {"id", "Whole number", "1"}, "", 0});
      list.Insert(1, {"", "customer", {"customer", "Text", "O'Brien"}, "", 0});
      list.Insert(2, {"", "price", {"price", "Exact number (6,2)", "19.90"}, "", 0});
      list.SetSelectedIndex(2);
      window.Find<ComboBox>("cboName").SetText("price");
      window.Find<Label>("lblStatus")
          .SetCaption("Importing: 450000 records, 45 %, 230000 a second.");
      window.Find<ProgressBar>("prgProgress").SetVisible(true);
      window.Find<ProgressBar>("prgProgress").SetValue(45);
      window.Find<Button>("cmdImport").SetEnabled(true);
    });
    DrawPictures();
    Draw("dlgDataLink", [](Window& window) {
      auto& list = window.Find<ListView>("lsvPairs");
      list.Insert(0, {"", "Data Source", {"/srv/data/shop.db"}, "", 0});
      list.Insert(1, {"", "Mode", {"ReadOnly"}, "", 0});
      window.Find<ComboBox>("cboProvider").SetText("SQLite");
      for (const char* name :
           {"lblDSN", "cboDSN", "lblDriver", "cboDriver", "lblServer", "txtServer", "lblPort",
            "txtPort", "lblUsername", "txtUsername", "lblPassword", "txtPassword", "chkKeep",
            "lblKeyring", "lblDatabase", "cboDatabase", "lblSSL", "cboSSL", "lblNoFields"})
        window.Find<Control>(name).SetVisible(false);
      window.Find<TextBox>("txtFile").SetText("/srv/data/shop.db");
      window.Find<Label>("lblResult").SetCaption("The connection works.");
    });
    Draw("dlgPassword", [](Window& window) {
      window.Find<Label>("lblLogin").SetCaption("Password of me at db.example.com (PostgreSQL)");
      window.Find<Label>("lblState")
          .SetCaption("The keyring gives no password for it. Please type it.");
    });
    for (const char* form : {"dlgAbout", "dlgCnODBC", "dlgCnSQLSrv", "dlgCnAccess", "dlgCnGeneric"})
      Draw(form, [](Window&) {});
  }

  /// The windows with plans, charts and diagrams.
  void DrawPictures() {
    Draw("dlgPlan", [](Window& window) {
      auto& list = window.Find<ListView>("lsvPlan");
      list.Insert(
          0, {"", "Hash Join", {"50", "61", "1", "4.2", "3 %", "Hash Cond: (o.c = c.id)"}, "", 0});
      ListRow costliest{
          "", "   Seq Scan on orders o", {"1000", "1200", "1", "3.9", "91 %, the most"}, "", 0};
      costliest.foreColor = 0x0000C0;
      list.Insert(1, costliest);
      list.SetSelectedIndex(0);
      list.SetColumnWidth(0, 3000);
      window.Find<Label>("lblPlan").SetCaption(
          "Planning Time 0.2 ms, Execution Time 4.3 ms. The share is that of the time.");
    });
    Draw("dlgChart", [](Window& window) {
      ChartPicture picture;
      for (int i = 0; i < 400; ++i) {
        picture.x.push_back(i);
        picture.y.push_back(std::sin(i / 40.0) * 50 + i % 7);
      }
      picture.xAxis = {"Row", AxisMeaning::Numbers, {}, 0, 400};
      picture.yAxis = {"total", AxisMeaning::Numbers, {}, -60, 70};
      window.Find<ChartBox>("chtChart").SetPicture(picture);
      for (const char* name : {"cboKind", "cboX", "cboY"}) {
        window.Find<ComboBox>(name).AddItem(name == std::string("cboKind") ? "Line" : "total");
        window.Find<ComboBox>(name).SetListIndex(0);
      }
      window.Find<Label>("lblChart").SetCaption("400 rows");
    });
    Draw("dlgDiagram", [](Window& window) {
      window.Find<DiagramBox>("dgmDiagram")
          .SetSvg("<svg xmlns='http://www.w3.org/2000/svg' width='300' height='120'>"
                  "<rect x='10' y='20' width='100' height='60' fill=\"white\" stroke=\"#5c6672\"/>"
                  "<rect x='10' y='20' width='100' height='20' fill=\"#d6e6fb\"/>"
                  "<text x='20' y='35' font-size='12'>orders</text>"
                  "<line x1='110' y1='50' x2='190' y2='50' stroke=\"#5c6672\"/>"
                  "<rect x='190' y='20' width='100' height='60' fill=\"white\" "
                  "stroke=\"#5c6672\"/><text x='200' y='35' font-size='12'>customers</text></svg>");
      window.Find<Label>("lblDiagram").SetCaption("2 tables, 1 foreign key");
    });
  }

  void DrawMessages() {
    DrawMessage("message-short", "Please select the SQL to be executed.", MessageIcon::Exclamation);
    DrawMessage(
        "message-medium",
        "Do you want to connect to another database using this instance of Tessel?\r\n\r\n"
        "- To execute the same SQL commands on ALL connections at once - click 'Yes'.\r\n"
        "- For a separate, independent connection using a new instance of Tessel - click 'No'.\r\n",
        MessageIcon::Question);
    std::string text;
    for (int line = 0; line < 200; ++line)
      text += "Line " + std::to_string(line) + " of an error.\n";
    DrawMessage("message-long", text, MessageIcon::Critical);
  }

  void DrawMessage(const QString& name, const std::string& text, MessageIcon icon) {
    Message message;
    message.text = text;
    message.icon = icon;
    message.buttons = MessageButtons::YesNoCancel;
    message.help = [] {};
    MessageDialog dialog(message, nullptr);
    dialog.show();
    Save(dialog, name);
  }

  QString folder_;
  QtDesktop& desktop_;
};

}  // namespace

int DrawScreenshots(const std::string& folder, bool dark) {
  int arguments = 0;
  QtDesktop desktop(arguments, nullptr);
  SystemTheme::Force(dark);
  Album(folder, desktop).DrawAll();
  return 0;
}

}  // namespace tessel::test
