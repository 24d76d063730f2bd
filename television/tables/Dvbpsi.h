// libdvbpsi, whose headers include nothing of what they need.
#pragma once

#include <sys/types.h>
#include <cstddef>
#include <cstdint>

extern "C" {
#include <dvbpsi/dvbpsi.h>

#include <dvbpsi/psi.h>

#include <dvbpsi/descriptor.h>

#include <dvbpsi/demux.h>

#include <dvbpsi/nit.h>
#include <dvbpsi/pat.h>
#include <dvbpsi/pmt.h>
#include <dvbpsi/sdt.h>
}
