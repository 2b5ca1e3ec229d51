#include <service/ReadOnlyDisk.h>

#include <QtEndian>

#include <cerrno>
#include <cstddef>
#include <fcntl.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>
#include <vector>

namespace {

constexpr size_t LowHalf = Q_BYTE_ORDER == Q_LITTLE_ENDIAN ? 0 : sizeof(__u32);

constexpr __u32 callNumber()
{
    return offsetof(seccomp_data, nr);
}

constexpr __u32 flagsOfOpen()
{
    return offsetof(seccomp_data, args) + 2 * sizeof(__u64) + LowHalf;
}

sock_filter statement(int code, __u32 value)
{
    return BPF_STMT(static_cast<__u16>(code), value);
}

sock_filter jump(int code, __u32 value, __u8 ifTrue, __u8 ifFalse)
{
    return BPF_JUMP(static_cast<__u16>(code), value, ifTrue, ifFalse);
}

} // namespace

bool makeDiskReadOnly()
{
    const sock_filter refuse = statement(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EROFS);
    const sock_filter allow = statement(BPF_RET | BPF_K, SECCOMP_RET_ALLOW);
    std::vector<sock_filter> program{statement(BPF_LD | BPF_W | BPF_ABS, callNumber())};
    const std::vector<long> changes{SYS_pwrite64, SYS_pwritev,  SYS_ftruncate, SYS_fallocate,
                                    SYS_mkdirat,  SYS_renameat, SYS_renameat2,
#ifdef SYS_mkdir
                                    SYS_mkdir,    SYS_rename
#endif
    };
    for (const long call : changes) {
        program.push_back(jump(BPF_JMP | BPF_JEQ | BPF_K, static_cast<__u32>(call), 0, 1));
        program.push_back(refuse);
    }
    program.push_back(jump(BPF_JMP | BPF_JEQ | BPF_K, SYS_openat, 1, 0));
    program.push_back(allow);
    program.push_back(statement(BPF_LD | BPF_W | BPF_ABS, flagsOfOpen()));
    program.push_back(jump(BPF_JMP | BPF_JSET | BPF_K, O_WRONLY | O_RDWR | O_CREAT, 0, 1));
    program.push_back(refuse);
    program.push_back(allow);
    const sock_fprog filter{static_cast<unsigned short>(program.size()), program.data()};
    return ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0
        && ::syscall(SYS_seccomp, SECCOMP_SET_MODE_FILTER, SECCOMP_FILTER_FLAG_TSYNC, &filter) == 0;
}
