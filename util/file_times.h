// Which of two files was modified later, to the second, by the clock on the wall.
#ifndef MERTU_UTIL_FILE_TIMES_H
#define MERTU_UTIL_FILE_TIMES_H

// Returns +1 when the derived file was modified later than the origin, 0 in the same second, -1
// when earlier or when there is no derived file ("you need to create %s " is said then). Both times
// are compared as local date and time. Files: only looked at.
// Ends the program: status 1, "Error file ... does not exist stop " when there is no origin.
double DIFF_TIME_FILE(char *name_file_origin, char *name_file_derived);

// Compares two texts in the form that asctime gives ("Www Mmm dd hh:mm:ss yyyy"): stores -1 in
// *deltat when the first is earlier, +1 when later, 0 when equal. Year, month, day, hour, minute
// and second are compared in this order up to the first difference. The texts are not changed.
// Ends the program: status 5, "error sm_timer in WINDOWS_DIFFTIME stop " for an unknown month name
// in the first text, "error sm_timer1 in WINDOWS_DIFFTIME stop " in the second.
void WINDOWS_DIFFTIME(double *deltat, char *ss_timer, char *ss_timer1);

#endif
