// Finds the directory that holds the learner's files, and keeps a second program out of it.
#ifndef MERTU_APP_WORK_DIR_H
#define MERTU_APP_WORK_DIR_H

// Makes the directory that holds mertu.conf the current one: the current directory when it has
// one, else the directory that `argv` names.
//   argv  the path the program was started with (argv[0]); its last two characters must be ".x"
// Prints the current directory and `argv`. Ends of the program, all with status 1 and a line on
// standard output: "error not .x at end of argv[0]=", "file ./mertu.conf unreachable stop ",
// "I don't understand stop".
void WORK_DIR(char *argv);

// Claims the current directory for this program by an advisory lock on it, held until the program
// ends (a second call gives the first lock back before it tries anew). Its files would not do: an
// editor puts another in their place. Held by another program: "Mertu is already running in " and
// status 1. A file system that knows no locks is no reason to stop.
void LOCK_WORK_DIR();

#endif
