// The main loop of the services for a program that has one of its own.
#pragma once

#include "shells/embedding/embedded_agenda.h"

namespace quorvel::embedding {

// Both belong to the default main context of the calling thread.
Wakeup nextWakeup();
void dispatchDue(); // does not wait

} // namespace quorvel::embedding
