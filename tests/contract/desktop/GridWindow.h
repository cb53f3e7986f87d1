#pragma once

#include <memory>

#include "contract/desktop/controls/DataGrid.h"
#include "tests/contract/desktop/ContractTools.h"
#include "tests/support/DataSteps.h"
#include "tests/support/MemoryData.h"

namespace tessel::test {

inline constexpr const char* gridName = "DataGrid";

/// A records window whose grid is shown and not yet bound, and an open connection.
struct GridWindow {
  explicit GridWindow(ContractHost& contractHost)
      : host(contractHost),
        data(host.TheDesktop().Events()),
        windows(host, "frmRecords"),
        window(*windows.document),
        grid(window.Find<DataGrid>(gridName)),
        connection(data.CreateConnection()) {
    OpenNow(*connection);
    grid.SetBounds({60, 1000, 9000, 4500});
    grid.SetVisible(true);
  }
  ~GridWindow() { grid.SetDataSource(nullptr); }
  GridWindow(const GridWindow&) = delete;
  GridWindow& operator=(const GridWindow&) = delete;

  [[nodiscard]] std::shared_ptr<Recordset> Open(const std::string& sql,
                                                LockType lock = LockType::ReadOnly) const {
    return QueryNow(*connection, sql, lock);
  }

  ContractHost& host;
  MemoryData data;
  Framed windows;
  Window& window;
  DataGrid& grid;
  std::shared_ptr<Connection> connection;
  std::shared_ptr<Recordset> recordset;
  Record record;
};

}  // namespace tessel::test
