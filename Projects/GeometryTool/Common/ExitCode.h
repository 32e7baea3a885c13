#pragma once

namespace Ovra::GeoTool
{

/// \brief What `ovrageo` answers to the shell; part of its interface, listed in
/// Documentation/ovrageo.md.
enum class ExitCode
{
    Success = 0,       ///< everything asked for was done
    InternalError = 1, ///< a fault of the tool itself, or out of memory
    Usage = 2,         ///< unknown option or subcommand, missing or wrong argument
    InputMissing = 3,  ///< an input file is missing or cannot be opened
    InputDamaged = 4,  ///< an input file is truncated, of another kind, or contradicts itself
    OutputFailed = 5,  ///< an output file cannot be written; what stood there before is untouched
    Unsuitable = 6,    ///< the input is sound, but what was asked for cannot be done with it
    Findings = 7,      ///< a check ran to its end and found something wrong with the case

    /// \name Of `diff` alone, which answers as diff(1) does
    /// \{
    Different = 1, ///< the cases differ
    Trouble = 2    ///< whatever kept it from comparing them
    /// \}
};

} // namespace Ovra::GeoTool
