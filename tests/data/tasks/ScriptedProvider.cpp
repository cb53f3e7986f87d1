#include "tests/data/tasks/ScriptedProvider.h"

#include <utility>

namespace tessel::test {

namespace {

class ScriptedSession : public ProviderSession {
 public:
  explicit ScriptedSession(std::shared_ptr<Script> script) : script_(std::move(script)) {
    ++script_->sessions;
  }
  ~ScriptedSession() override { --script_->sessions; }

  void Open(const Login& /*login*/, WorkContext& context) override {
    const Inside inside(*this);
    if (script_->open) script_->open(context);
    ++script_->opens;
  }
  void Close() noexcept override {
    const Inside inside(*this);
    ++script_->closes;
  }
  [[nodiscard]] bool IsAlive() noexcept override { return script_->alive; }
  [[nodiscard]] Properties ReadProperties() override {
    return script_->properties ? script_->properties() : Properties();
  }
  [[nodiscard]] Fields ExecuteCommand(const std::string& sql, WorkContext& context) override {
    const Inside inside(*this);
    resultOpen_ = true;
    current_ = &context;
    return script_->execute ? script_->execute(sql, context) : NoColumns();
  }
  [[nodiscard]] bool FetchRows(RowSink& rows, std::size_t maxRows, WorkContext& context) override {
    const Inside inside(*this);
    return script_->fetch && script_->fetch(rows, maxRows, context);
  }
  [[nodiscard]] Fields NextResult(WorkContext& context) override {
    const Inside inside(*this);
    return script_->next ? script_->next(context) : NoColumns();
  }
  void CloseResult() noexcept override {
    current_ = nullptr;
    if (!std::exchange(resultOpen_, false)) ++script_->wrongCalls;
  }
  [[nodiscard]] std::vector<std::size_t>
  FindKey(std::size_t /*result*/, const std::vector<FieldInfo>& /*fields*/) override {
    return script_->unique && script_->unique() ? std::vector<std::size_t>{0}
                                                : std::vector<std::size_t>();
  }
  [[nodiscard]] std::string CurrentCatalog() override {
    return script_->catalog ? script_->catalog() : std::string();
  }
  void SetCatalog(const std::string& name, WorkContext& /*context*/) override {
    if (script_->setCatalog) script_->setCatalog(name);
  }
  [[nodiscard]] UserTransaction Transaction() override {
    return script_->transaction ? script_->transaction() : UserTransaction::None;
  }
  void ReadSchema(SchemaRows& /*rows*/, WorkContext& /*context*/) override {
    throw Error(errorNumber::notSupported, "Scripted", "There is no schema.");
  }
  void Cancel() noexcept override {
    ++script_->cancels;
    const WorkContext* current = current_;
    if (current != nullptr && !current->StopAsked()) ++script_->wrongCancels;
    if (script_->cancel) script_->cancel();
  }
  [[nodiscard]] std::chrono::milliseconds CancelPatience() const noexcept override {
    return script_->patience;
  }

 private:
  /// A call that may be cancelled is under way.
  class Inside {
   public:
    explicit Inside(ScriptedSession& session) : session_(session) {
      if (++session_.depth_ != 1) ++session_.script_->wrongCalls;
    }
    Inside(const Inside&) = delete;
    Inside& operator=(const Inside&) = delete;
    ~Inside() { --session_.depth_; }

   private:
    ScriptedSession& session_;
  };

  std::shared_ptr<Script> script_;
  std::atomic<int> depth_ = 0;
  std::atomic<WorkContext*> current_ = nullptr;  ///< Of the command that runs.
  bool resultOpen_ = false;
};

}  // namespace

void Gate::Pass() {
  std::unique_lock lock(mutex_);
  ++arrived_;
  changed_.notify_all();
  changed_.wait(lock, [this] { return open_; });
}

void Gate::Open() {
  const std::lock_guard lock(mutex_);
  open_ = true;
  changed_.notify_all();
}

void Gate::AwaitArrival() {
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [this] { return arrived_ > 0; });
}

std::unique_ptr<ProviderSession>
ScriptedProvider::CreateSession(const ConnectionKeys& /*keys*/) const {
  return std::make_unique<ScriptedSession>(script_);
}

Fields OneColumn() {
  FieldInfo field;
  field.name = "n";
  field.type = DataType::BigInt;
  return {field};
}

void AddNumbers(RowSink& rows, std::int64_t first, std::int64_t last) {
  for (std::int64_t number = first; number <= last; ++number) {
    rows.Column(0).AppendInteger(number);
    rows.EndRow();
  }
}

}  // namespace tessel::test
