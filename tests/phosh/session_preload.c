// Preloaded into the phone's shell: the shell asks which login session it belongs to, and in a
// container it belongs to none. It gets the one that the stand-in of the login service knows.
#include <errno.h>
#include <string.h>
#include <sys/types.h>

int sd_pid_get_session(pid_t process, char** session);

// Like the real one, it gives the caller a text to free.
int sd_pid_get_session(pid_t process, char** session) {
    (void)process;
    if (session == NULL) {
        return 0;
    }
    *session = strdup("c1");
    return *session != NULL ? 0 : -ENOMEM;
}
