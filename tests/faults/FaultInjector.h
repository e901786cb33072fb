#pragma once

/// Counts the calls by which this process changes files, and for `Once` those by which it reads them, in this
/// program and in the libraries it uses, and lets one of them go wrong.
namespace faultInjector {

enum class Fault {
    Kill, ///< the process ends when half of the call is done
    Full, ///< this call and all later ones find a full disk
    Once, ///< this call fails once
};

/// Starts counting. \param step  which call goes wrong, from 0; −1: none, and each is named on standard error
void arm(int step, Fault fault, int error);
void disarm();

constexpr int killed = 9; ///< exit code

} // namespace faultInjector
