"""Streams, objects and what has no one-line counterpart: against NumPy, SciPy and closed forms."""

import copy
import pickle

import numpy as np
import pytest
from scipy import signal

import dsp

rng = np.random.default_rng(11)
x = rng.normal(size=1000)
z = x + 1j * rng.normal(size=1000)
near = dict(rtol=1e-11, atol=1e-12)


def blocks(samples, sizes=(1, 7, 0, 300, 64)):
    edges = np.minimum(np.cumsum((0,) + sizes + (len(samples),)), len(samples))
    return [samples[a:b] for a, b in zip(edges, edges[1:])]


@pytest.mark.parametrize("samples", [x, z], ids=["real", "complex"])
@pytest.mark.parametrize(
    "make",
    [
        lambda: dsp.FirFilter(np.hanning(20)),
        lambda: dsp.FirFilter(np.exp(0.1j * np.arange(90))),
        lambda: dsp.SymmetricFir(dsp.fir2("taps20")),
        lambda: dsp.HalfBandFilter(),
        lambda: dsp.Decimator(3),
        lambda: dsp.Resampler(5.3),
        lambda: dsp.Resampler(1.0, mode=True),
        lambda: dsp.FractionalResampler(1.7, 2),
        lambda: dsp.FractionalResampler(1.2, dsp.rsmp_cos(2050, [8, 0.3, 0.5, 0.2]), interp=False),
        lambda: dsp.FractionalResampler(0.4, dsp.rsmp_pcos(2050, [8, 0.3, 0.5, 0.2])),
    ],
)
def test_a_stream_in_blocks_is_the_stream_at_once(make, samples):
    stream = make()
    whole = stream(samples)
    stream.reset()
    np.testing.assert_allclose(np.concatenate([stream(b) for b in blocks(samples)]), whole, **near)
    assert len(whole) > 100 and whole.dtype == (complex if np.iscomplexobj(whole) else float)
    first = make()
    np.testing.assert_allclose(np.concatenate([first(b) for b in blocks(samples)]), whole, **near)


    waves = np.stack([samples, samples[::-1], 2 * samples]).reshape(3, 1, -1)
    rows = make()
    head = rows(waves[..., :333])
    forks = copy.copy(rows), pickle.loads(pickle.dumps(rows)), rows
    tails = [fork(np.moveaxis(waves[..., 333:], -1, 0), axis=0) for fork in forks]
    for tail in tails:
        together = np.concatenate([head, np.moveaxis(tail, 0, -1)], -1)
        assert together.shape == (3, 1, len(whole))
        np.testing.assert_allclose(together[0, 0], whole, **near)
        np.testing.assert_allclose(together[2, 0], 2 * whole, **near)
    with pytest.raises(dsp.Error, match="reset"):
        rows(samples)


def test_rows_are_as_each_by_itself():
    a, b = rng.normal(size=(2, 3, 16, 2)) + 1j * rng.normal(size=(2, 3, 16, 2))
    nodes, at = np.arange(16.0), np.linspace(0, 15, 31)[rng.permutation(31)]
    for f, operands in (
        (dsp.dft, [a]), (dsp.rdft, [a.real]), (dsp.magsq, [a]), (dsp.mean, [a]), (dsp.peak, [a.real]),
        (dsp.lin_regres2, [b]), (dsp.mul, [a, b]), (dsp.add, [a, b[:, :5]]), (dsp.append, [a, b]), (dsp.cmp, [a, b]),
        (dsp.corr, [b[:, :5], a]), (dsp.limit, [a, -0.5, 2]), (dsp.smooth, [a, 3]), (dsp.find_max, [a.real]),
        (dsp.spectrum, [a]), (dsp.window, [a, "hann"]), (dsp.interp, [nodes, a.real, at]), (dsp.unwrap_phase, [a]),
    ):  # fmt: skip
        sliced = lambda k, m: [o[k, :, m] if np.ndim(o) > 1 else o for o in operands]
        axis = {} if f in (dsp.mul, dsp.magsq) else dict(axis=1)
        result = f(*operands, **axis)
        for k, m in np.ndindex(3, 2):
            one, ours = f(*sliced(k, m)), result if isinstance(result, tuple) else (result,)
            for whole, expected in zip(ours, one if isinstance(one, tuple) else (one,)):
                np.testing.assert_array_equal(whole[k, :, m] if np.ndim(expected) else whole[k, m], expected)
    assert dsp.mul(np.ones((3, 1)), np.ones(4)).shape == (3, 4) == dsp.add(np.ones((3, 4)), 2.0).shape
    assert dsp.rdft(np.ones((0, 9))).shape == (0, 5) and dsp.mean(np.ones((0, 3))).shape == (0,)
    assert dsp.rdft(dsp.Signal(np.ones((2, 9)), 0.5)).dx == pytest.approx(1 / 4.5)
    out = np.ones((2, 4))
    assert dsp.rev(np.arange(8.0).reshape(2, 4), out=out).base is out and out[1, 0] == 7
    average = dsp.Average("mean")
    average(a)
    np.testing.assert_allclose(copy.copy(average)(b), (a + b) / 2)
    assert average.count == 1


def test_filters_follow_their_state():
    taps = np.hanning(31)
    stream, zi = dsp.FirFilter(taps), np.zeros(30)
    for block in blocks(x):
        expected, zi = signal.lfilter(taps, 1, block, zi=zi) if len(block) else (block, zi)
        np.testing.assert_allclose(stream(block), expected, **near)
    half = np.array([1.0, 2, 3])
    for odd, anti, full in (
        (True, False, [1, 2, 3, 2, 1]), (False, False, [1, 2, 3, 3, 2, 1]), (False, True, [1, 2, 3, -3, -2, -1]),
    ):  # fmt: skip
        np.testing.assert_allclose(dsp.SymmetricFir(half, odd=odd, anti=anti)(x), signal.lfilter(full, 1, x), **near)
    decimated = dsp.Decimator(4)(dsp.Signal(x, 0.25))
    assert decimated.dx == 1.0 and list(decimated) == list(x[::4])


@pytest.mark.parametrize("ratio", [1.0, 48 / 44.1, 2.0, np.pi, 16.0])
def test_resampler_keeps_a_tone(ratio):
    t = np.arange(20000)
    y = dsp.Resampler(ratio)(dsp.Signal(np.cos(2 * np.pi * 0.1 / ratio * t)))
    assert y.dx == pytest.approx(ratio) and len(y) == pytest.approx(20000 / ratio, abs=100)
    basis = np.exp(2j * np.pi * 0.1 * np.arange(len(y)))
    fit = np.linalg.lstsq(np.column_stack([basis.real, basis.imag]), y, rcond=None)
    assert np.hypot(*fit[0]) == pytest.approx(1, abs=0.01) and np.sqrt(fit[1][0] / len(y)) < 1e-5
    mixed, whole = dsp.Resampler(ratio), dsp.Resampler(ratio)
    parts = [mixed(z[:500]), mixed(x[500:])]
    np.testing.assert_array_equal(np.concatenate(parts), whole(np.concatenate([z[:500], x[500:]])))
    real = dsp.Resampler(ratio)
    real(x)
    if ratio != 1.0:
        with pytest.raises(ValueError):
            real(z)


def test_averages():
    spectra = [dsp.spectrum(rng.normal(size=256), dx=0.5) for _ in range(5)]
    magnitudes = np.abs(spectra)
    for average, expected in (
        (dsp.Average(), (magnitudes**2).mean(0)),
        (dsp.Average("mean"), np.mean(spectra, 0)),
        (dsp.Average("max_hold, power"), (magnitudes**2).max(0)),
        (dsp.Average("min_hold, power"), (magnitudes**2).min(0)),
        (dsp.Average("geometric, power"), np.exp(np.log(magnitudes**2).mean(0))),
        (dsp.Average("harmonic, power"), 1 / (1 / magnitudes**2).mean(0)),
        (dsp.Average("periodic", period=3), spectra[3]),
        (dsp.Average("mean", weight=0.25), sum(0.25 * 0.75**k * s for k, s in zip(range(3), spectra[:0:-1]))
         + 0.75**4 * spectra[0] + 0.25 * 0.75**3 * spectra[1]),
        (dsp.Average("mean, limit", limit=1), spectra[4]),
    ):  # fmt: skip
        for _ in range(2):
            average.reset()
            results = [average(s) for s in spectra]
        np.testing.assert_allclose(results[-1], expected, **near)
        first = magnitudes[0] ** 2 if average.mode & dsp.Avg.POWER else spectra[0]
        np.testing.assert_allclose(results[0], first, **near)
        assert average.count == 5 and results[-1].dx == spectra[0].dx
    with pytest.raises(dsp.Error):
        average(x)
    assert average.count == 5


def test_spectra_and_windows():
    tone = dsp.cos(1000, 50.0, dx=1e-3)
    for window in ("flattop", dsp.Window.HANN, 6):
        s = dsp.mag(dsp.spectrum_dft(tone, window))
        assert s.dx == pytest.approx(1) and s.axis()[dsp.find_max(s)] == 50 and s.max() == pytest.approx(1, abs=2e-3)
    found = dsp.peak(dsp.spectrum(dsp.cos(1024, 123.4, dx=1e-3), "gausstop"), "gauss")
    assert found.place == pytest.approx(123.4, abs=2e-3)
    padded = dsp.spectrum(x, "hann", n=4096, fraction=0.25)
    assert len(padded) == 2049 and padded.dx == pytest.approx(1 / 4096)
    two = dsp.spectrum_dft(z, "none", "two_sided")
    np.testing.assert_allclose(two, np.fft.fftshift(np.fft.fft(z)) / 1000, **near)
    assert two.axis(centred=True)[500] == 0
    back = dsp.spectrum(dsp.spectrum(x[:512], "none", "raw"), "none", "raw, inverse")
    np.testing.assert_allclose(back, x[:512], **near)
    ones = np.ones(64)
    inner = dsp.window(ones, "hann", "raw, no_swap", active=32)
    np.testing.assert_allclose(inner[16:48], signal.get_window("hann", 32), atol=1e-15)
    assert not inner[:16].any() and not inner[48:].any()
    lobe = np.sinc((np.arange(64) - 32) / 32)
    np.testing.assert_allclose(dsp.window_sinc(ones, flags="raw, no_swap"), lobe, atol=1e-15)
    taps = np.sin(np.pi * (np.arange(5) + 0.5) / 5) ** 2
    np.testing.assert_allclose(dsp.window_fir(np.ones(5), "hann"), taps, atol=1e-15)
    assert dsp.window_scale("hann", 64) == pytest.approx(2)
    assert dsp.window_scale("hann", 64, "power") ** 2 == pytest.approx(8 / 3)
    assert dsp.window_scale("hann", 64, active=32) == pytest.approx(4)
    assert dsp.window_enbw("hann", 64, active=32) == pytest.approx(3)


def test_transforms_undo_each_other():
    s, w = dsp.Signal(x[:512], 0.01), dsp.Signal(z, 0.01)
    for there, back, samples in (
        (dsp.fft, dsp.ifft, w[:512]), (dsp.dft, dsp.idft, w), (dsp.rfft, dsp.irfft, s), (dsp.rdft, dsp.irdft, s),
        (dsp.dct, dsp.idct, s), (dsp.bitrev, dsp.bitrev, s), (dsp.rtop, dsp.ptor, w), (dsp.neg, dsp.neg, w),
        (dsp.swap_halves, lambda y: dsp.swap_halves(y, undo=True), w[:333]), (dsp.rev, dsp.rev, w),
        (lambda y: dsp.zpad(y, 700, "centre, unscaled"), lambda y: dsp.unzpad(y, 512, "centre, unscaled"), s),
        (lambda y: dsp.dct(y, normalised=True), lambda y: dsp.idct(y, normalised=True), s),
        (lambda y: dsp.rdft(y[:511]), lambda y: dsp.irdft(y, odd=True), s[:511]),
        (dsp.integ, dsp.differ, s), (lambda y: dsp.cscale(y, 2j), lambda y: dsp.cscale(y, -0.5j), w),
        (lambda y: dsp.inter(y, -y), lambda y: dsp.Signal(y[::2]), s),
    ):  # fmt: skip
        result = back(there(samples))
        np.testing.assert_allclose(result, samples, rtol=1e-9, atol=1e-13)
        assert result.dx == pytest.approx(0.01)
    np.testing.assert_allclose(dsp.recon(dsp.rdft(s)), dsp.dft(s), **near)
    np.testing.assert_allclose(dsp.orecon(dsp.rdft(s[:511])), dsp.dft(s[:511]), **near)
    np.testing.assert_allclose(dsp.bitrev(s, scale=True) * 512, dsp.bitrev(s), **near)


def test_samples():
    for ours, theirs in (
        (dsp.real(z), z.real), (dsp.imag(z), z.imag), (dsp.conj(z), z.conj()), (dsp.rtoc(x), x + 0j),
        (dsp.recip(z), 1 / z), (dsp.sqrt(z), np.sqrt(z)), (dsp.square(z), z * z), (dsp.timesi(z), 1j * z),
        (dsp.scale(z, 3), 3 * z),
        (dsp.magsq(z), np.abs(z) ** 2), (dsp.log(z), np.log(z)), (dsp.log10(np.exp(x)), np.log10(np.exp(x))),
        (dsp.exp(z), np.exp(z)), (dsp.exp10(x), 10**x), (dsp.asin(x / 9), np.arcsin(x / 9)),
        (dsp.acos(x / 9), np.arccos(x / 9)),
        (dsp.sinh(x), np.sinh(x)), (dsp.cosh(x), np.cosh(x)), (dsp.sub(x, z), x - z), (dsp.div(x, z), x / z),
        (dsp.conj_mul(x, z), x * z.conj()), (dsp.ritoc(x, -x), x - 1j * x), (dsp.maximum(x, -x), np.abs(x)),
        (dsp.minimum(x, -x), -np.abs(x)), (dsp.avg_add(x, z, 0.1), z + 0.1 * (x - z)), (dsp.shift(x, 10), x[10:]),
        (dsp.subvec(z, 5, 20), z[5:25]), (dsp.line(5, 2.0, 1.0, dx=0.5), [1, 2, 3, 4, 5]), (dsp.zero(z), 0 * z),
        (dsp.cexp(50, 0.2, 1.0), np.exp(1j * (1 + 0.4 * np.pi * np.arange(50)))), (dsp.zinter(x)[::2], x),
        (dsp.zinter(x)[1::2], 0 * x),
        (dsp.addcos(z * 0, 0.25, 2.0, both=True), 2 * 1j ** np.arange(1000)), (dsp.unwrap(np.angle(z), 0), np.angle(z)),
        (dsp.edge([0, 1, 0, -1, 0, 1], 0.5, falling=True, dx=2.0), [1, 3, 9]), (dsp.edge([0, 1, 0], 0.5), [0.5]),
        (dsp.besy1([1.0]), [-0.7812128213002887]), (dsp.phase(-np.ones(2)), [np.pi, np.pi]),
    ):  # fmt: skip
        np.testing.assert_allclose(ours, theirs, rtol=1e-10, atol=1e-13)
    quarter = dsp.Signal(x, 0.25)
    for ours in (dsp.add(quarter, z), dsp.mul(z, quarter), dsp.sub(dsp.Signal(x, 0.4), dsp.Signal(x, 0.1))):
        assert ours.dx == 0.25
    assert dsp.cmp(x, x + 1e-9) == -1 and dsp.cmp(x, x + 1e-9, 1e-8) == 0
    assert dsp.limit(x, -9, 9).clipped is False and dsp.limit(x, -1, 1).clipped is True


def test_statistics():
    for ours, theirs in (
        (dsp.max(x), x.max()), (dsp.min(z), z[np.abs(z).argmin()]), (dsp.magsq_sum(z), (np.abs(z) ** 2).sum()),
        (dsp.pop_var(z), z.var()), (dsp.samp_stddev(x), x.std(ddof=1)),
    ):  # fmt: skip
        assert ours == pytest.approx(theirs, rel=1e-12) and type(ours) in (float, complex)
    y = 3 + 0.5 * np.arange(100) + 0.01 * x[:100]
    fit, t = dsp.lin_regres2(y, dx=0.1), 0.1 * np.arange(100)
    (slope, intercept), cov = np.polyfit(t, y, 1, cov="unscaled")
    residual = ((y - intercept - slope * t) ** 2).sum() / 98
    np.testing.assert_allclose(
        fit[:7] + fit[14:],
        [slope, intercept, residual, *residual * np.array([cov[0, 0], cov[1, 1], cov[0, 1]]),
         cov[0, 1] / np.sqrt(cov[0, 0] * cov[1, 1]), t.mean(), y.mean(), t.var(ddof=1), y.var(ddof=1),
         np.cov(t, y)[0, 1], np.corrcoef(t, y)[0, 1]], rtol=1e-9,
    )  # fmt: skip
    assert fit.x_slope * fit.slope == pytest.approx(fit.r**2)
    bump = 3 - (np.arange(9) - 4.3) ** 2
    assert dsp.peak(bump, dx=0.5)[:3] == pytest.approx((3, 4.3, 2.15))
    assert dsp.peak([1.0, 100.0], "gauss").clamped and not dsp.peak(bump).clamped
    assert dsp.peak(-bump, "parabolic, min").position == pytest.approx(4.3)
    assert dsp.peak(bump, "no_interp", index=2)[:2] == (bump[2], 2)


def test_splines_take_their_ends():
    nodes = np.linspace(0, 3, 12)
    q = np.linspace(0, 3, 50)
    d2 = dsp.cspline_2d(nodes, np.exp(nodes), dsp.End("clamped", 1.0), dsp.End("second_derivative", np.exp(3)))
    from scipy.interpolate import CubicSpline

    expected = CubicSpline(nodes, np.exp(nodes), bc_type=((1, 1.0), (2, np.exp(3))))
    np.testing.assert_allclose(dsp.interp(nodes, np.exp(nodes), q, "spline", d2=d2), expected(q), rtol=1e-12)
    np.testing.assert_allclose(dsp.interp(nodes, nodes**2, q, "quadratic"), q**2, atol=1e-12)


def test_traces():
    def moving(samples, width):
        reach = [min(width // 2, k, len(samples) - 1 - k) for k in range(len(samples))]
        return np.array([samples[k - r : k + r + 1].mean() for k, r in enumerate(reach)])

    np.testing.assert_allclose(dsp.smooth(x, 9), moving(x, 9), **near)
    np.testing.assert_allclose(np.abs(dsp.smooth(z, 5)), moving(np.abs(z), 5), **near)
    wrapped = np.angle(np.exp(0.7j * np.arange(100)))
    np.testing.assert_allclose(dsp.smooth(wrapped, 5, phase=True), wrapped, atol=1e-12)
    np.testing.assert_allclose(dsp.unwrap_phase(z), np.unwrap(np.angle(z)), atol=1e-12)
    r = np.abs(z) / 9
    for name, expected in (
        ("level", 20 * np.log10(r)), ("magnitude", r), ("phase", np.degrees(np.angle(z))), ("swr", (1 + r) / (1 - r)),
        ("return_loss", -20 * np.log10(r)),
    ):  # fmt: skip
        np.testing.assert_allclose(dsp.format_buffer(z / 9, name), expected, rtol=1e-9)
    assert dsp.find_max(x) == x.argmax() and dsp.find_min(x) == x.argmin()
    top = x.argmax()
    rest = np.delete(np.arange(1000), top)
    assert dsp.find_max(x, skip=(top, top + 1)) == rest[x[rest].argmax()]
    assert dsp.find_min([0.0, 2, 1]) == 0 and dsp.find_min([0.0, 2, 1], skip=None) == 2
    assert list(dsp.scale_to_int([-1.0, 0, 0.52, 9], 0, 1, 0, 100)) == [-100, 0, 52, 900]
    np.testing.assert_allclose(dsp.scale_to_fp(x, -1, 1, 10, 30), 20 + 10 * x, **near)
    np.testing.assert_allclose(dsp.expand_linear(11, 1, 3), np.linspace(1, 3, 11), **near)


def test_calibration_undoes_the_error_box():
    f = np.linspace(0, 1, 51)
    terms = 0.05 * np.exp(1j * f), 0.1 * np.exp(2j * f), 0.9 * np.exp(-3j * f)
    actual = [-1.0, np.exp(-0.2j * f), 0.0]
    measured = [terms[0] + terms[2] * a / (1 - terms[1] * a) for a in actual]
    kept = [np.array(m) for m in measured]
    calibration = dsp.OnePort(measured, actual)
    for found, term in zip((calibration.directivity, calibration.source_match, calibration.reflection_tracking), terms):
        np.testing.assert_allclose(found, term, **near)
    device = 0.5 * np.exp(5j * f)
    np.testing.assert_allclose(calibration.correct(calibration.distort(device)), device, **near)
    np.testing.assert_array_equal(measured, kept)
    for wrong in (measured[:2], measured + measured[:1]):
        with pytest.raises(ValueError):
            dsp.OnePort(wrong, actual)


def test_polynomials_circles_and_arcs():
    c, points = x[:9], 3 - 1j + 2 * np.exp(1j * np.sort(rng.uniform(0, 1, 40)))
    zeros = np.polynomial.polynomial.polyroots(c)
    np.testing.assert_allclose(sorted(dsp.roots(c), key=abs), sorted(zeros, key=lambda r: (abs(r), -r.imag)), **near)
    np.testing.assert_allclose(dsp.poly(dsp.roots(c)), c / c[-1], **near)
    np.testing.assert_allclose(dsp.peval(c, dsp.solve(c, c[0] + 0.1)[0]), c[0] + 0.1, **near)
    np.testing.assert_array_equal(dsp.solve(c, 0, all=True), dsp.roots(c))
    rows, at = np.stack([points, 2 * points], -1), np.arange(40.0)
    np.testing.assert_allclose(dsp.circle_fit(rows, axis=0).radius, [2, 4], **near)
    between = dsp.arc_interp(at, rows, [0.5], axis=0)
    np.testing.assert_allclose(between[0, 1], 2 * dsp.arc_interp(at, points, 0.5)[0])
    for call, message in (
        (lambda: dsp.roots([0, 0]), "all 0"), (lambda: dsp.roots([1, np.nan]), "roots takes finite"),
        (lambda: dsp.poly([np.inf]), "finite"), (lambda: dsp.roots([1, 1e-320]), "too large"),
        (lambda: dsp.solve([2], 2), "all 0"), (lambda: dsp.solve([0, 1], 1j), "all=True"),
        (lambda: dsp.solve([0, 1j], 1), "real"), (lambda: dsp.solve([], 0), "all 0"),
        (lambda: dsp.circle_fit([0, 1, 2]), "no circle"), (lambda: dsp.arc_interp([0, 0], [1, 2], 1), "rises"),
        (lambda: dsp.arc_interp([0, 1], [1], 1), "for 2"),
    ):  # fmt: skip
        with pytest.raises(dsp.Error, match=message):
            call()
