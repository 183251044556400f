"""The shared library and its routines as C has them: `lib.dspi_db(record, 20.0)`.

A routine raises `Error` where C returns its failure status, and `TypeError` for arguments that do not fit its types.
Calls hold the interpreter's lock, so that threads take turns: the library serves one at a time. Lengths that are passed
beside an array are not checked against it: as in C, they are the caller's affair.
"""

from __future__ import annotations

import ctypes
import ctypes.util
import operator
import os
import re
from pathlib import Path
from types import SimpleNamespace
from typing import Any, Iterator

import numpy as np


class Error(ValueError):
    """A routine refuses its arguments; the message says why, `routine` is its name in dsp.h."""

    def __init__(self, message: str, routine: str = "") -> None:
        super().__init__(message)
        self.routine = routine

    def __reduce__(self) -> tuple[Any, ...]:
        return Error, (str(self), self.routine)


class Vec(ctypes.Structure):
    """dsp_vec."""

    _fields_ = [
        ("dx", ctypes.c_double),
        ("data", ctypes.c_void_p),
        ("capacity", ctypes.c_int32),
        ("length", ctypes.c_int32),
        ("is_complex", ctypes.c_uint32),
        ("reserved", ctypes.c_int32),
    ]


class RsmpCoef(ctypes.Structure):
    """dsph_rsmp_coef."""

    _fields_ = [
        ("halfband", Vec),
        ("halfband_odd", ctypes.c_int32),
        ("prefilter", Vec),
        ("prefilter_odd", ctypes.c_int32),
        ("kernel", Vec),
        ("interp", ctypes.c_int32),
        ("ratio", ctypes.c_double),
        ("halvings", ctypes.c_int32),
        ("mode", ctypes.c_int32),
        ("delay1", ctypes.c_int32),
        ("delay2", ctypes.c_int32),
    ]


class RsmpState(ctypes.Structure):
    """dsph_rsmp_state."""

    _fields_ = [
        ("stages", ctypes.c_int32),
        ("stage_hist", ctypes.POINTER(Vec)),
        ("stage_phase", ctypes.POINTER(Vec)),
        ("delay1", ctypes.c_int32),
        ("pre_hist", Vec),
        ("rsmp_state", Vec),
        ("post_hist", Vec),
        ("post_phase", Vec),
        ("delay2", ctypes.c_int32),
    ]


class _Integer:
    """An integer argument that is refused, not cut, where it does not fit."""

    def __init__(self, kind: Any, low: int, high: int) -> None:
        self.kind, self.low, self.high = kind, low, high

    def from_param(self, value: Any) -> Any:
        number = operator.index(value)
        if not self.low <= number <= self.high:
            raise OverflowError(f"{number} lies outside {self.low} to {self.high}")
        return self.kind(number)


INT32 = _Integer(ctypes.c_int32, -(2**31), 2**31 - 1)


class _Array:
    """The memory of an array of one kind, in one piece; None for a null pointer."""

    def __init__(self, kind: Any) -> None:
        self.kind = np.dtype(kind)

    def from_param(self, array: Any) -> Any:
        if array is None:
            return None
        if not isinstance(array, np.ndarray) or array.dtype != self.kind or not array.flags.carray:
            raise TypeError(f"not a writable array of {self.kind} in one piece")
        return ctypes.c_void_p(array.ctypes.data)


AllocHook = ctypes.CFUNCTYPE(None, ctypes.POINTER(Vec))
ReallocHook = ctypes.CFUNCTYPE(None, ctypes.POINTER(Vec), ctypes.c_int32, ctypes.c_uint32)

# One letter a type.
TYPES: dict[str, Any] = {
    "v": ctypes.POINTER(Vec),
    "i": INT32,
    "u": _Integer(ctypes.c_uint32, 0, 2**32 - 1),
    "d": ctypes.c_double,
    "f": ctypes.c_float,
    "D": _Array(np.float64),
    "F": _Array(np.float32),
    "I": _Array(np.int32),
    "z": _Array(np.complex128),
    "p": ctypes.c_void_p,
    "s": ctypes.c_char_p,
    "c": ctypes.POINTER(RsmpCoef),
    "t": ctypes.POINTER(RsmpState),
    "a": AllocHook,
    "A": ctypes.POINTER(AllocHook),
    "r": ReallocHook,
    "R": ctypes.POINTER(ReallocHook),
}
EXPECTED = {
    "v": "a Record", "c": "coefficients", "t": "a state", "i": "an integer", "u": "an integer", "d": "a number", "f": "a number", "s": "bytes",
    "D": "a writable float64 array in one piece", "F": "a writable float32 array in one piece",
    "I": "a writable int32 array in one piece", "z": "a writable complex128 array in one piece",
}  # fmt: skip

# The routines by their arguments; what stands before a colon is returned, an int32_t where there is no colon.
SIGNATURES = {
    "": "dsp_lib_init dsp_version dsp_free_internal",
    "v": """dsp_init dsp_destroy dsp_alloc dspi_real dspi_imag dspi_rtoc dspi_conj dspi_neg dspi_recip dspi_sqrt
        dspi_square dspi_timesi dspi_zero dspi_mag dspi_magsq dspi_phase dspi_rtop dspi_ptor dspi_asin dspi_acos
        dspi_sinh dspi_cosh dspi_besy0 dspi_besy1 dspi_exp dspi_exp10 dspi_log dspi_log10 dspi_rev dspi_sort
        dspi_swap_halves dspi_swap_halves2 dspi_recon dspi_differ dspi_integ dspi_pdiffer dspi_unwrap dspi_bitrev
        dspi_bitrev_scale dspi_rfft dspi_irfft dspi_rdft dspi_hilbert dspi_analytic dspi_zinter
        dspi_proots dspi_pztoc""",
    "vv": """dsp_copy dsp_append dspu_mag dspu_magsq dspu_sqrt dspi_window_cos dsps_sum dsps_mean dsps_gmean dsps_hmean
        dsps_median dsps_max dsps_min dsps_magsq_sum dsps_rms dsps_pop_var dsps_samp_var dsps_pop_stddev
        dsps_samp_stddev dsps_skew dsps_excess dsps_lin_regres dsps_lin_regres2 dspc_rsmp_cos dspc_rsmp_pcos""",
    "vvv": """dspb_add dspb_sub dspb_mul dspb_conj_mul dspb_div dspb_max dspb_min dspb_pmul dspb_ritoc dspbs_dot
        dspb_inter""",
    "vi": "dspi_shift dspi_zpad dspi_orecon dspi_unwrap_wnd dspi_dft dspi_dct dspi_window_fir dspc_fir2 dspc_rsmp",
    "vu": "dspi_fft dspi_irdft",
    "vd": "dspi_db dspi_offset dspi_scale",
    "vp": "dspi_hwfilt",
    "vii": "dspi_zpad2 dspi_unzpad dspi_window",
    "viu": "dsp_realloc",
    "vid": "dspi_edge",
    "vdi": "dspi_window_gauss dspi_window_kaiser dspi_window_tukey",
    "vdd": "dspi_cscale dspc_line dspc_cos dspc_cexp",
    "vddI": "dspi_limit",
    "vddi": "dspi_window_sinc",
    "vidd": "dspc_fir",
    "viid": "dspi_window2",
    "viddd": "dspi_addcos",
    "vvi": "dsp_copy_at_most",
    "vvii": "dspu_subvec dsph_dft dsps_peak",
    "vvd": "dsps_peval dsps_psolve",
    "vvdd": "dsps_pcsolve",
    "vvdI": "dsp_cmp",
    "vviv": "dspd_deci",
    "vvpv": "dspd_hwfilt",
    "vvddi": "dsps_hist",
    "vvidii": "dsph_fft",
    "vvivdv": "dspd_rsmp",
    "vviidv": "dspd_rsmp2",
    "vvvd": "dspb_avg_add",
    "vvvv": "dspd_fir",
    "vvviu": "dspb_corr",
    "vvviiv": "dspd_sfir",
    "vvvct": "dsph_rsmp",
    "vvviiidd": "dsph_avg",
    "vvvddii": "dspb_cspline_2d",
    "vvvviu": "dsph_corr",
    "vvvvv": "dsp_cspline",
    "vvvvvi": "dsp_interp",
    "aA": "dsp_lib_alloc dsp_lib_free",
    "rR": "dsp_lib_realloc",
    "Diuu": "cf_dspi_fft",
    "DDiudii": "cf_dsph_fft",
    "sI": "dsp_window_from_str",
    "isi": "dsp_window_to_str",
    "Diii": "dsp_window_scale",
    "Diiid": "dsp_window2_scale",
    "Dii": "dsp_window_enbw",
    "Diid": "dsp_window2_enbw",
    "c": "dsph_rsmp_coef_init dsph_rsmp_coef_destroy",
    "ci": "dsph_rsmp_coef_alloc",
    "cidii": "dsph_rsmp_coef_setup",
    "t": "dsph_rsmp_state_init dsph_rsmp_state_destroy",
    "ctu": "dsph_rsmp_state_alloc",
    "ct": "dsph_rsmp_state_reset",
    "void:dDi": "vfpdbMul1 vfpdbMul2",
    "void:fFi": "vfpsbMul2",
    "void:DiddIii": "vfpdb_ScaleToInt vfpdb_ScaleToInt2",
    "void:DiddDdd": "vfpdb_ScaleToFP",
    "i:Dii": "vfpd_FindMax vfpd_FindMin",
    "Diiii": "vfpd_FindMax2 vfpd_FindMin2",
    "void:Didd": "vfpd_ExpandLinear vfpd_ExpandLog",
    "DDiiiii": "vfpd_Smooth",
    "zziiii": "vfpd_SmoothCpx",
    "void:uzDii": "vfpd_FormatBuffer",
    "void:ziiD": "vfpd_UnwrapPhase",
    "u:": "get_fpscr",
    "u:u": "set_fpscr",
    "u:i": "set_runfast",
    "void:zzzzzzii": "Compute1PortTerms",
    "zzziii": "MatrixMult",
    "zi": "invert",
    "ziizDD": "vfpd_CircleFit",
    "DziDzi": "CircularInterpolation",
}

# The status that means failure, where it is not -1.
FAILURES = {"dsp_version": None, "vfpd_FindMax": None, "vfpd_FindMin": None, "invert": 0}
RESULTS: dict[str, Any] = {"": ctypes.c_int32, "i": ctypes.c_int32, "u": ctypes.c_uint32, "void": None}


def candidates() -> Iterator[str]:
    """Where the library may lie, in the order in which it is looked for."""
    if "DSP_LIBRARY" in os.environ:
        yield os.environ["DSP_LIBRARY"]
        return
    package = Path(__file__).resolve().parent
    tree = package.parent.parent
    for directory in (package, tree / "build" / "default", tree / "build"):
        for name in ("libdsp.so.2", "libdsp.so", "libdsp.dylib", "libdsp.dll", "dsp.dll"):
            if (directory / name).exists():
                yield str(directory / name)
    yield ctypes.util.find_library("dsp") or "libdsp.so.2"


# The places of records and arrays that may be null, where a routine has some.
OPTIONAL = {
    "dspi_limit": {3}, "dsp_interp": {2}, "dsp_cspline": {2}, "dspd_fir": {3}, "dspd_sfir": {5}, "dspd_deci": {3},
    "dspd_hwfilt": {3}, "dspd_rsmp": {5}, "dspd_rsmp2": {5}, "dsph_avg": {2}, "dsph_corr": {3}, "dsph_rsmp": {2, 4},
    "dsp_window_from_str": {1}, "dsp_window_scale": {0}, "dsp_window2_scale": {0}, "dsp_window_enbw": {0},
    "dsp_window2_enbw": {0}, "dsph_rsmp_coef_init": {0}, "dsph_rsmp_coef_destroy": {0},
}  # fmt: skip


def _misfit(name: str, arguments: str, args: tuple[Any, ...], reason: Exception) -> TypeError:
    """Which argument does not fit its type, and what the routine takes there."""
    place = re.match(r"argument (\d+)", str(reason))
    k = int(place.group(1)) - 1 if place else len(args)
    if k >= min(len(args), len(arguments)) or arguments[k] not in EXPECTED:
        return TypeError(f"{name}: {reason}")
    return TypeError(f"{name} takes {EXPECTED[arguments[k]]} as argument {k + 1}, got {args[k]!r:.60}")


def _routine(library: ctypes.PyDLL, name: str, result: str, arguments: str) -> Any:
    function = library[name]
    function.restype = RESULTS[result]
    function.argtypes = [TYPES[letter] for letter in arguments]
    failure = FAILURES.get(name, -1 if result == "" else None)
    needed = [k for k, letter in enumerate(arguments) if letter in "vctDFIz" and k not in OPTIONAL.get(name, ())]

    def call(*args: Any) -> Any:
        if type(None) in map(type, args):
            for k in needed:
                if k < len(args) and args[k] is None:
                    raise _misfit(name, arguments, args, TypeError(f"argument {k + 1}"))
        try:
            status = function(*args)
        except ctypes.ArgumentError as reason:
            raise _misfit(name, arguments, args, reason) from None
        if status is not None and status == failure:
            raise Error(f"{name} returned {failure}: it does not take these arguments, or memory ran out", name)
        return status

    call.__name__ = name
    call.records = [k for k, letter in enumerate(arguments) if letter == "v"]  # type: ignore[attr-defined]
    return call


def run(routine: Any, *args: Any) -> Any:
    """Calls a routine whose conditions are met, so that it fails for lack of memory only."""
    try:
        return routine(*args)
    except Error as error:
        raise MemoryError(f"{routine.__name__}: memory ran out") from error


def load(path: str) -> Any:
    """Every routine of the library at `path`, as an attribute."""
    library = ctypes.PyDLL(path)
    routines = SimpleNamespace()
    for signature, names in SIGNATURES.items():
        result, _, arguments = signature.rpartition(":")
        for name in names.split():
            setattr(routines, name, _routine(library, name, result, arguments))
    if not 205 <= routines.dsp_version() < 300:
        raise OSError(f"{path} is release {routines.dsp_version() / 100}, not 2.5 or a later 2")
    return routines


def _find() -> Any:
    reasons = []
    for path in candidates():
        try:
            return load(path)
        except (OSError, AttributeError) as reason:
            reasons.append(str(reason))
    raise ImportError("the dsp library is not to be found; name it by DSP_LIBRARY\n  " + "\n  ".join(reasons))


lib: Any = _find()
