/// Counts the calls of operator new in this program.
#ifndef TESTS_TXLOGU_ALLOCATIONS_H
#define TESTS_TXLOGU_ALLOCATIONS_H

int allocationCount();

#endif
