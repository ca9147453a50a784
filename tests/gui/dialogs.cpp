// What is done with the dialogs that come up while a test window handles its events.
#include "support/prelude.h"

#include "gui/dialogs.h"

#include "gui/window.h"
#include "util/owned.h"

namespace {

GtkWidget *standing_dialog() {
  GtkWidget *found = nullptr;
  GList *windows = gtk_window_list_toplevels();
  for (GList *item = windows; item != nullptr; item = item->next)
    if (GTK_IS_DIALOG(item->data) && gtk_widget_get_mapped(GTK_WIDGET(item->data)))
      found = GTK_WIDGET(item->data);
  g_list_free(windows);
  return found;
}

std::string text_of(GtkWidget *dialog) {
  gchar *text = nullptr;
  g_object_get(dialog, "text", &text, nullptr);
  Owned_text owned(text);
  return text != nullptr ? text : "";
}

void find_label(GtkWidget *widget, gpointer label) {
  if (GTK_IS_LABEL(widget))
    *static_cast<GtkWidget **>(label) = widget;
  else if (GTK_IS_CONTAINER(widget))
    gtk_container_foreach(GTK_CONTAINER(widget), find_label, label);
}

std::string label_inside(GtkWidget *button) {
  GtkWidget *label = nullptr;
  find_label(button, &label);
  return label != nullptr ? LABEL_OF(label) : "";
}

std::vector<GtkWidget *> buttons_of(GtkWidget *dialog) {
  std::vector<GtkWidget *> buttons;
  GList *children =
      gtk_container_get_children(GTK_CONTAINER(gtk_dialog_get_action_area(GTK_DIALOG(dialog))));
  for (GList *item = children; item != nullptr; item = item->next)
    buttons.push_back(GTK_WIDGET(item->data));
  g_list_free(children);
  std::sort(buttons.begin(), buttons.end(), [](GtkWidget *a, GtkWidget *b) {
    GtkAllocation left;
    GtkAllocation right;
    gtk_widget_get_allocation(a, &left);
    gtk_widget_get_allocation(b, &right);
    return left.x < right.x;
  });
  return buttons;
}

Seen_dialog seen_now(GtkWidget *dialog, GtkWidget *window) {
  Seen_dialog now = {};
  now.text = text_of(dialog);
  g_object_get(dialog, "message-type", &now.type, nullptr);
  for (GtkWidget *button : buttons_of(dialog))
    now.buttons.push_back(label_inside(button));
  now.modal = gtk_window_get_modal(GTK_WINDOW(dialog));
  now.of_window = gtk_window_get_transient_for(GTK_WINDOW(dialog)) == GTK_WINDOW(window);
  return now;
}

} // namespace

void Dialog_script::will_answer(int response) {
  due_.push_back([response](GtkWidget *dialog) { QUEUE_ANSWER(dialog, response); });
}

void Dialog_script::will_do(const Act &act) {
  due_.push_back(act);
}

void Dialog_script::serve(GtkWidget *window) {
  GtkWidget *dialog = standing_dialog();
  if (dialog == nullptr)
    return;
  seen.push_back(seen_now(dialog, window));
  if (due_.empty()) {
    ADD_FAILURE() << "nothing is to be done with this dialog: " << seen.back().text;
    gtk_dialog_response(GTK_DIALOG(dialog), GTK_RESPONSE_DELETE_EVENT);
    return;
  }
  Act act = due_.front();
  due_.pop_front();
  act(dialog);
}

void QUEUE_ANSWER(GtkWidget *dialog, int response) {
  if (response == GTK_RESPONSE_DELETE_EVENT) {
    QUEUE_CLOSE(dialog);
    return;
  }
  for (GtkWidget *button : buttons_of(dialog))
    if (gtk_dialog_get_response_for_widget(GTK_DIALOG(dialog), button) == response)
      QUEUE_PRESS(button, LEFT);
}
