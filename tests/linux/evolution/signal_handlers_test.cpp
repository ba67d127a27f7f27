#include "linux/evolution/signal_handlers.h"

#include <gio/gio.h>
#include <gtest/gtest.h>

#include <optional>

#include "linux/gio/handles.h"

namespace orvane::host {
namespace {

// Of signals that carry a text.
class SignalHandlersTest : public testing::Test {
 protected:
  void sendAdded(const char* name) const { g_action_group_action_added(group(), name); }
  void sendRemoved(const char* name) const { g_action_group_action_removed(group(), name); }
  [[nodiscard]] GActionGroup* group() const { return G_ACTION_GROUP(object.get()); }

  const gio::ObjectPtr<GSimpleActionGroup> object{g_simple_action_group_new()};
  std::optional<SignalHandlers> handlers{object.get()};
  int heard = 0;
  const SignalHandlers::Heard count = [this] { ++heard; };
};

TEST_F(SignalHandlersTest, HearASignalWhateverItCarries) {
  handlers->add("action-added", count);
  sendAdded("one");
  sendAdded("other");
  sendRemoved("one");
  EXPECT_EQ(heard, 2);
}

TEST_F(SignalHandlersTest, HearOneTextAlone) {
  handlers->addFor("action-added", "revision", count);
  sendAdded("revision");
  sendAdded("online");
  sendAdded("");
  sendAdded("revisions");
  sendRemoved("revision");
  EXPECT_EQ(heard, 1);
}

TEST_F(SignalHandlersTest, HearNoTextWhereThereIsNone) {
  const gio::ObjectPtr<GCancellable> silent{g_cancellable_new()};
  SignalHandlers ofSilent(silent.get());
  ofSilent.addFor("cancelled", "revision", count);
  g_cancellable_cancel(silent.get());
  EXPECT_EQ(heard, 0);
}

TEST_F(SignalHandlersTest, HearNothingOnceTheyAreGone) {
  handlers->add("action-added", count);
  handlers->addFor("action-added", "one", count);
  handlers.reset();
  sendAdded("one");
  EXPECT_EQ(heard, 0);
}

TEST_F(SignalHandlersTest, MayBeDestroyedByWhatTheyCall) {
  handlers->addFor("action-added", "one", [this] {
    ++heard;
    handlers.reset();
  });
  sendAdded("one");
  sendAdded("one");
  EXPECT_EQ(heard, 1);
}

}  // namespace
}  // namespace orvane::host
