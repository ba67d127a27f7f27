#pragma once

#include <giomm/liststore.h>
#include <gtkmm/listitem.h>
#include <gtkmm/listview.h>
#include <gtkmm/signallistitemfactory.h>

#include <functional>
#include <string>
#include <vector>

#include "platform/form.h"

namespace orvane::window {

// A row of the model; the widget that happens to stand for it follows it.
class SourceRow final : public Glib::Object {
 public:
  explicit SourceRow(FormRow row) : row_(std::move(row)) {}

  [[nodiscard]] const FormRow& row() const { return row_; }
  void set(const FormRow& row);
  [[nodiscard]] sigc::signal<void()>& signalChanged() { return changed_; }

 private:
  FormRow row_;
  sigc::signal<void()> changed_;
};

// The toggles of a list, of which only those near the visible part have widgets. A name that is too
// long for its row ends in an ellipsis, and is told in full in a tooltip. Where there is no name at
// all, who hears the window instead of seeing it is told what the list is called.
class SourceRows final : public Gtk::ListView {
 public:
  using Toggled = std::function<void(const std::string& key, bool isOn)>;

  // Distances are those of the form: between the rows, and around them.
  SourceRows(std::string title, double rowSpacing, double padding, Toggled toggled);
  ~SourceRows() override;
  SourceRows(const SourceRows&) = delete;
  SourceRows& operator=(const SourceRows&) = delete;

  void show(const std::vector<FormRow>& rows);

 private:
  using Item = Glib::RefPtr<Gtk::ListItem>;

  Glib::RefPtr<Gtk::ListItemFactory> makeFactory();
  void bind(const Item& item);
  void unbind(const Item& item);
  void place(const Item& item) const;

  const std::string title_;
  const double rowSpacing_;
  const double padding_;
  const Toggled toggled_;
  std::vector<FormRow> shown_;
  std::vector<Item> bound_;
  Glib::RefPtr<Gio::ListStore<SourceRow>> model_ = Gio::ListStore<SourceRow>::create();
};

}  // namespace orvane::window
