#pragma once

#include "data/providers/Provider.h"

namespace tessel {

/// Begins a transaction, or a savepoint in the user's own, and undoes all done in it unless it is
/// kept. Where nothing is known of transactions it does nothing: one statement is whole by itself.
/// Worker thread.
class RowTransaction {
 public:
  /// Both outlive it. Raises Error when the user's transaction has failed.
  RowTransaction(ProviderSession& session, const WriteDialect& dialect);
  RowTransaction(const RowTransaction&) = delete;
  RowTransaction& operator=(const RowTransaction&) = delete;
  ~RowTransaction();

  void Keep(const WorkContext& context);

 private:
  void Undo() noexcept;

  ProviderSession& session_;
  bool isSavepoint_ = false;
  bool kept_ = false;
};

}  // namespace tessel
