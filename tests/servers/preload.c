/* Loaded into a server. Two things that otherwise take a root user and a disk of its own:
   - setgroups and initgroups succeed, so that a server started without privileges logs users in;
   - a disk that is full: the file named by TEST_DISK_LIMIT holds a size in bytes up to which a file
     can be written; without that file the disk has room. */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <grp.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <unistd.h>

int setgroups(size_t count, const gid_t* groups) { return count && !groups ? -1 : 0; }
int initgroups(const char* user, gid_t group) { return user && group != (gid_t)-1 ? 0 : -1; }

static size_t Room(int file, size_t count) {
    const char* path = getenv("TEST_DISK_LIMIT");
    struct stat status;
    char text[24] = "";
    int limitFile;
    ssize_t got;
    off_t at, limit;
    if (!path || fstat(file, &status) != 0 || !S_ISREG(status.st_mode)) return count;
    if ((limitFile = open(path, O_RDONLY | O_CLOEXEC)) < 0) return count;
    got = read(limitFile, text, sizeof text - 1);
    close(limitFile);
    at = lseek(file, 0, SEEK_CUR);
    limit = atoll(text);
    if (got <= 0 || at < 0 || at + (off_t)count <= limit) return count;
    return at < limit ? (size_t)(limit - at) : 0;
}

ssize_t write(int file, const void* data, size_t count) {
    static ssize_t (*next)(int, const void*, size_t);
    int before = errno;
    size_t room = count ? Room(file, count) : 0;
    if (!next) next = (ssize_t(*)(int, const void*, size_t))dlsym(RTLD_NEXT, "write");
    if (count && !room) {
        errno = ENOSPC;
        return -1;
    }
    errno = before;
    return next(file, data, room);
}
