#include "data/tasks/Task.h"

#include <memory>
#include <utility>

#include <gtest/gtest.h>

namespace tessel::test {

namespace {

/// A poster that owns its task, as those of the connections do.
struct OwnedTask {
  [[nodiscard]] Task::Poster TakePoster() {
    return [this, owner = std::exchange(task, nullptr)] { ++posts; };
  }

  std::shared_ptr<Task> task = std::make_shared<CatalogTask>("sales");
  int posts = 0;
};

TEST(TaskTest, ATaskThatEndsIsNotKeptAliveByItsPoster) {
  OwnedTask owned;
  const std::shared_ptr<Task> worker = owned.task;
  worker->SetPoster(owned.TakePoster());
  EXPECT_EQ(owned.posts, 0);
  worker->End(std::nullopt, false);
  EXPECT_EQ(owned.posts, 1);
  EXPECT_EQ(worker.use_count(), 1);
}

TEST(TaskTest, ATaskLeftBehindIsNotKeptAliveByItsPoster) {
  OwnedTask owned;
  const std::shared_ptr<Task> worker = owned.task;
  worker->SetPoster(owned.TakePoster());
  EXPECT_TRUE(worker->Abandon());
  EXPECT_EQ(owned.posts, 1);
  EXPECT_EQ(worker.use_count(), 1);
}

TEST(TaskTest, APosterThatComesAfterTheEndIsCalledAndLetGoOf) {
  OwnedTask owned;
  const std::shared_ptr<Task> worker = owned.task;
  worker->End(std::nullopt, false);
  worker->SetPoster(owned.TakePoster());
  EXPECT_EQ(owned.posts, 1);
  EXPECT_EQ(worker.use_count(), 1);
}

}  // namespace

}  // namespace tessel::test
