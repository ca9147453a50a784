// (G) Mertu's icon, shown by its windows.
#ifndef MERTU_APP_WINDOW_ICON_H
#define MERTU_APP_WINDOW_ICON_H

// Gives every window made from now on, dialogs too, Mertu's icon in the sizes 16, 32, 48 and 64.
// The pictures are part of the program: they show whether it is installed or not. One that cannot
// be read is left out.
void USE_WINDOW_ICON();

#endif
