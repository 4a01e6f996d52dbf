#pragma once

#include <string>
#include <vector>

#include "tour.h"

namespace korvane::host {

// What an operator does to the lists of the panel's pages, in the words of a tour's steps.

using Entries = std::vector<FormEntry>;
using Cells = std::vector<std::string>;

// A dialog of the panel: how to know it, and the name of its picture.
struct FormVisit {
    const char *caption, *picture;
};

// Shows the page that belongs to a button of the panel, or to the table of this name.
HWND openPage(Tour& tour, int button);
HWND openTable(Tour& tour, std::string_view table);
// A control of the page that shows.
HWND onPage(Tour& tour, int control);

// The dialog of a new record, through the list's menu; of one that is there, by double-click.
HWND openNew(Tour& tour, HWND list, const FormVisit& visit);
// Through an item of the menu on a row; -1 for below the rows.
HWND openByMenu(Tour& tour, HWND list, int row, std::string_view item, const FormVisit& visit);
HWND openRow(Tour& tour, HWND list, int row, const FormVisit& visit);
// These entries are not taken: the message is pictured as NAME, and the dialog stays.
void refuse(Tour& tour, HWND form, const Entries& entries, std::string_view message,
            const std::string& name);
// These are, after the dialog's picture.
void accept(Tour& tour, HWND form, const FormVisit& visit, const Entries& entries);

// Leaves a dialog as it is, after its picture.
void cancel(Tour& tour, HWND form, const FormVisit& visit);

// Insert opens the dialog, Enter too for the row; Esc closes both.
void openByKeys(Tour& tour, HWND list, int row, const FormVisit& visit);

// By Del, and Yes.
void removeRow(Tour& tour, HWND list, int row);

// Fails unless the row shows this.
void expectRow(Tour& tour, HWND list, int row, const Cells& cells);
int lastRow(Tour& tour, HWND list);

}  // namespace korvane::host
