// The tags of an entry: the words behind the second '*' of its name line, and whether a tag asked
// for is among them.
#ifndef MERTU_LESSON_TAG_TEST_H
#define MERTU_LESSON_TAG_TEST_H

// Whether an entry counts as untagged: 1 when its tag text holds no word, or only marks of the form
// Q12 and R3 (as far as they are seen, see tag_test.cpp), else 0.
// ssd: the tag text, accent-free; not changed.
int NOTAG(char *ssd);

// Whether an entry belongs to a lesson of this tag. Works on a copy of the name line.
// name_line: as read from the idx1 file. A line with fewer than two '*' (the first is looked for
// from the second character on) carries no tag and is not untagged either: false.
// ss_tag: found anywhere in the accent-free tag text with a blank behind it; capitals and small
// letters differ. "": the untagged entries, as NOTAG tells them.
bool CARRIES_TAG(const char *name_line, const char *ss_tag);

#endif
