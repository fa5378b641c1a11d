// The permissions of files for those who may do everything: the administrator's right to override them is
// given up for a while. Threads that are started meanwhile do not have it either.
#pragma once

#include <QtGlobal>

#include <linux/capability.h>
#include <sys/syscall.h>
#include <unistd.h>

class WithoutOverride
{
public:
    WithoutOverride()
    {
        read(m_before);
        Sets sets[2] = {m_before[0], m_before[1]};
        sets[0].effective &= ~(1u << CAP_DAC_OVERRIDE | 1u << CAP_DAC_READ_SEARCH);
        write(sets);
    }
    ~WithoutOverride() { write(m_before); }
    WithoutOverride(const WithoutOverride &) = delete;
    WithoutOverride &operator=(const WithoutOverride &) = delete;

private:
    using Sets = __user_cap_data_struct; // 32 capabilities each

    static __user_cap_header_struct thisThread() { return {_LINUX_CAPABILITY_VERSION_3, 0}; }
    static void read(Sets *sets)
    {
        __user_cap_header_struct header = thisThread();
        if (::syscall(SYS_capget, &header, sets) != 0)
            qFatal("the capabilities of the process cannot be read");
    }
    static void write(const Sets *sets)
    {
        __user_cap_header_struct header = thisThread();
        if (::syscall(SYS_capset, &header, sets) != 0)
            qFatal("the capabilities of the process cannot be changed");
    }

    Sets m_before[2];
};
