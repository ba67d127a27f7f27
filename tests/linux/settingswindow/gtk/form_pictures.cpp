// Shows the settings' form as the window does and keeps a picture of each tab, for looking at:
// form_pictures FOLDER SOURCES [dark] [rtl] [large], where SOURCES is full, empty or many. The
// display's scale is taken from the toolkit's GDK_SCALE.
#include <gdkmm/texture.h>
#include <glibmm/main.h>
#include <gsk/gsk.h>
#include <gtk/gtk.h>
#include <gtkmm/init.h>
#include <gtkmm/settings.h>

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "linux/paint/fonts.h"
#include "linux/paint/painter.h"
#include "linux/paint/text_measurer.h"
#include "linux/settingswindow/gtk/conversation.h"
#include "settings_in_memory.h"
#include "view/layout.h"

namespace orvane {
namespace {

constexpr unsigned kRestMilliseconds = 700;
constexpr int kLargeTexts = 144 * 1024;  // half as large again

using Names = std::vector<std::string>;

Names fewNames() {
  return {"Work",
          "Personal",
          "Family 👨‍👩‍👧 & friends",
          "Product launches, reviews and everything else that the whole company has to know of",
          "לוח שנה אישי",
          "التقويم الشخصي",
          "",
          "誕生日",
          "Holidays in Germany",
          "Tennis"};
}

Names manyNames() {
  Names names;
  while (names.size() < 500) names.push_back("Calendar " + std::to_string(names.size() + 1));
  return names;
}

void offer(SettingsInMemory& world, const std::string& sources) {
  if (sources == "full") world.offer(fewNames(), {"Errands", "Groceries", "Someday"});
  if (sources == "many") world.offer(manyNames(), manyNames());
  if (sources == "empty") return;
  world.settings->toggleCalendar("id-0");
  world.settings->toggleCalendar("id-3");
}

// Stands in for the board's program, in the same process.
class Board {
 public:
  explicit Board(const std::string& sources) { offer(world_, sources); }

  void show() {
    formwire::Show show;
    show.title = "Orvane Settings";
    show.style.titlebarAppearsTransparent = true;
    show.form = world_.view->form();
    conversation_.hear(show);
  }
  void chooseTab(const std::string& tag) {
    world_.view->edit({Form::selectedTabKey, tag});
    update();
  }
  [[nodiscard]] std::vector<std::string> tabs() const {
    std::vector<std::string> tags;
    for (const auto& tab : world_.view->form().tabs) tags.push_back(tab.tag);
    return tags;
  }
  [[nodiscard]] window::SettingsWindow& window() { return *conversation_.window(); }

 private:
  void hear(const formwire::WindowMessage& message) {
    if (const auto* edited = std::get_if<formwire::Edited>(&message)) {
      lastEdit_ = edited->number;
      world_.view->edit(edited->edit);
      Glib::signal_idle().connect_once([this] { update(); });
    } else if (const auto* scale = std::get_if<formwire::PreviewScale>(&message)) {
      scale_ = scale->scale;
      Glib::signal_idle().connect_once([this] { update(); });
    }
  }
  void update() {
    const Form form = world_.view->form();
    conversation_.hear(formwire::Update{0, lastEdit_, form});
    forEachControl(form, [&](const FormControl& control) {
      const auto* preview = std::get_if<FormPreview>(&control.content);
      if (preview && scale_ > 0) conversation_.hear(drawn(control.key, *preview));
    });
  }
  formwire::Preview drawn(const std::string& key, const FormPreview& preview) {
    formwire::Preview picture;
    picture.key = key;
    picture.scale = scale_;
    picture.width = static_cast<std::uint32_t>(preview.size.width * scale_);
    picture.height = static_cast<std::uint32_t>(preview.size.height * scale_);
    picture.pixels.resize(std::size_t{picture.width} * picture.height * 4);
    const int width = static_cast<int>(picture.width);
    const int height = static_cast<int>(picture.height);
    PaintTarget target;
    target.pixels = {reinterpret_cast<std::uint8_t*>(picture.pixels.data()), width, height,
                     width * 4};
    target.scale = scale_;
    painter_->paint(layout(preview.view, preview.size, *measurer_).list, target,
                    {{0, 0, width, height}});
    return picture;
  }

  SettingsInMemory world_;
  std::shared_ptr<host::Typesetter> typesetter_ = host::makeTypesetter();
  std::unique_ptr<TextMeasurer> measurer_ = host::makeTextMeasurer(typesetter_);
  std::unique_ptr<Painter> painter_ = host::makePainter(typesetter_);
  std::uint64_t lastEdit_ = 0;
  double scale_ = 0;
  window::Conversation conversation_{
      [this](const formwire::WindowMessage& message) { hear(message); }};
};

void keepPicture(Gtk::Window& window, const std::string& path) {
  const auto scale = static_cast<float>(window.get_scale_factor());
  GtkSnapshot* snapshot = gtk_snapshot_new();
  gtk_snapshot_scale(snapshot, scale, scale);
  GdkPaintable* paintable = gtk_widget_paintable_new(GTK_WIDGET(window.gobj()));
  gdk_paintable_snapshot(paintable, snapshot, window.get_width(), window.get_height());
  GskRenderNode* node = gtk_snapshot_free_to_node(snapshot);
  GskRenderer* renderer = gtk_native_get_renderer(GTK_NATIVE(window.gobj()));
  GdkTexture* texture = gsk_renderer_render_texture(renderer, node, nullptr);
  gdk_texture_save_to_png(texture, path.c_str());
  g_object_unref(texture);
  gsk_render_node_unref(node);
  g_object_unref(paintable);
}

class Pictures {
 public:
  Pictures(Board& board, std::string folder, std::string suffix)
      : board_(board), folder_(std::move(folder)), suffix_(std::move(suffix)) {}

  void take() {
    board_.show();
    next();
    loop_->run();
  }

 private:
  void next() {
    const auto tabs = board_.tabs();
    if (at_ >= tabs.size()) return loop_->quit();
    board_.chooseTab(tabs[at_]);
    Glib::signal_timeout().connect_once(
        [this, tag = tabs[at_]] {
          keepPicture(board_.window(), folder_ + "/settings-" + tag + suffix_ + ".png");
          ++at_;
          next();
        },
        kRestMilliseconds);
  }

  Board& board_;
  const std::string folder_;
  const std::string suffix_;
  std::size_t at_ = 0;
  Glib::RefPtr<Glib::MainLoop> loop_ = Glib::MainLoop::create();
};

int run(const std::vector<std::string>& arguments) {
  if (arguments.size() < 2 || !gtk_init_check()) {
    std::cerr << "form_pictures FOLDER full|empty|many [dark] [rtl] [large], on a display\n";
    return 1;
  }
  Gtk::init_gtkmm_internals();
  const auto wants = [&](const char* word) {
    return std::find(arguments.begin() + 2, arguments.end(), word) != arguments.end();
  };
  const bool isDark = wants("dark");
  if (wants("large")) Gtk::Settings::get_default()->property_gtk_xft_dpi() = kLargeTexts;
  if (wants("rtl")) gtk_widget_set_default_direction(GTK_TEXT_DIR_RTL);
  Gtk::Settings::get_default()->property_gtk_application_prefer_dark_theme() = isDark;
  Board board(arguments[1]);
  Pictures(board, arguments[0], "-" + arguments[1] + (isDark ? "-dark" : "-light")).take();
  return 0;
}

}  // namespace
}  // namespace orvane

int main(int count, char** arguments) {
  ::setenv("GSK_RENDERER", "cairo", 0);
  return orvane::run({arguments + 1, arguments + count});
}
