// GdkColor, the one toolkit type in a core record, also where the toolkit is not installed.
#ifndef MERTU_CONFIG_GDK_COLOR_H
#define MERTU_CONFIG_GDK_COLOR_H

#if __has_include(<gdk/gdk.h>)
#include <gdk/gdk.h>
#else
#include <glib.h>

// The layout of the toolkit's own record, so that core and window code agree on it.
typedef struct _GdkColor {
  guint32 pixel; // colour map entry; not ours to set
  guint16 red;   // channels from 0 to 0xFFFF
  guint16 green;
  guint16 blue;
} GdkColor;
#endif

#endif
