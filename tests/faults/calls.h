// A process of its own in which one system call, or every one from there on, goes wrong.
//
// The calls that touch the files of the current directory are counted: those by which a file there
// is opened, read, written, synced, closed, renamed, removed, dated, made. A filter of the kernel
// stops each before it is done, whichever library made it, and hands it to the plan.
#ifndef MERTU_TESTS_FAULTS_CALLS_H
#define MERTU_TESTS_FAULTS_CALLS_H

#include <functional>
#include <string>
#include <vector>

// What a call does.
enum Call_kind { CALL_WRITE, CALL_SYNC, CALL_NAME, CALL_OPEN_TO_WRITE, CALL_CLOSE, CALL_READ };

struct Call_made {
  Call_kind kind;
  char text[60]; // its name, and the file where it names one
};

enum Fault {
  NO_FAULT,
  FAIL_ONCE,         // answers an error and is not done
  FAIL_FROM_THERE,   // so does each after it that is no reading
  SHORT_ONCE,        // half of the bytes are written, and so it says
  SHORT_THEN_FAIL,   // half of the bytes are written, then each that is no reading fails; what
                     // lies in a file before the place of a pwrite can still be written
  KILLED_AFTER,      // the process is killed when it is done
  KILLED_IN_BETWEEN, // half of the bytes are written, then the process is killed
  NB_FAULTS
};

struct Fault_plan {
  Fault fault = NO_FAULT;
  int call = 0;  // the number of the call, from 1
  int error = 0; // the errno it answers
};

// How the process ended, and what it did.
struct Faulty_run {
  bool killed = false; // by the plan
  int signal = 0;      // by anything else
  int status = 0;      // of its exit
  std::string output;  // standard output and standard error
  std::vector<Call_made> calls;
};

// False where this kernel or machine cannot filter calls.
bool CAN_FILTER_CALLS();

// Runs `work` in a process of its own. It is ended after 20 seconds.
Faulty_run RUN_WITH_FAULT(const Fault_plan &plan, const std::function<void()> &work);

// In words, for a message.
std::string NAME_OF_FAULT(const Fault_plan &plan);

#endif
