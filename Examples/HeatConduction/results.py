"""Writes temperatures as a .vtu file, and as a picture of three cuts, by VTK and without a display."""

import numpy as np
import vtkmodules.vtkRenderingFreeType  # noqa: F401, lends the text renderer its fonts
from vtkmodules.util.numpy_support import numpy_to_vtk, numpy_to_vtkIdTypeArray, vtk_to_numpy
from vtkmodules.vtkCommonCore import vtkPoints
from vtkmodules.vtkCommonDataModel import VTK_HEXAHEDRON, VTK_PYRAMID, VTK_TETRA, VTK_WEDGE
from vtkmodules.vtkCommonDataModel import vtkCellArray, vtkImageData, vtkUnstructuredGrid
from vtkmodules.vtkFiltersCore import vtkProbeFilter
from vtkmodules.vtkIOImage import vtkPNGWriter
from vtkmodules.vtkIOXML import vtkXMLUnstructuredGridWriter
from vtkmodules.vtkRenderingCore import vtkTextProperty, vtkTextRenderer

import elements

# VTK's type, and our local nodes in the order of VTK: its wedge starts with the other triangle's sense.
_CELLS = {elements.TETRAHEDRON: (VTK_TETRA, [0, 1, 2, 3]),
          elements.PYRAMID: (VTK_PYRAMID, [0, 1, 2, 3, 4]),
          elements.WEDGE: (VTK_WEDGE, [0, 2, 1, 3, 5, 4]),
          elements.HEXAHEDRON: (VTK_HEXAHEDRON, [0, 1, 2, 3, 4, 5, 6, 7])}

_WIDTH = 480  # of the longest side of a cut, in pixels
_MARGIN = 30
_STOPS = np.array([[8, 6, 40], [90, 18, 110], [188, 55, 84], [249, 142, 9], [252, 255, 164]])  # colours
_BAR = 24


def grid(solver, solution):
    """The elements that took part, with temperatures at nodes, and numbers and heat flux by element."""
    used = np.flatnonzero(~np.isnan(solution.temperatures))
    result = vtkUnstructuredGrid()
    points = vtkPoints()
    points.SetData(_vtk_array(solver.input.points[used]))
    result.SetPoints(points)
    _set_cells(result, solver, used)
    for name, values in (("temperature", solution.temperatures), ("node", solver.input.node_ids)):
        result.GetPointData().AddArray(_vtk_array(values[used], name))
    blocks = solver.blocks
    by_element = {"element": [block.ids for block in blocks],
                  "material": [block.materials for block in blocks],
                  "region": [block.regions for block in blocks],
                  "heat_flux": [solver.fluxes(block, solution.temperatures) for block in blocks]}
    for name, values in by_element.items():
        result.GetCellData().AddArray(_vtk_array(np.concatenate(values), name))
    return result


def _vtk_array(values, name=None):
    array = numpy_to_vtk(np.ascontiguousarray(values), deep=True)
    if name:
        array.SetName(name)
    return array


def _set_cells(result, solver, used):
    position = np.zeros(len(solver.input.node_ids), dtype=np.int64)
    position[used] = np.arange(len(used))
    types, offsets, connectivity = [], [0], []
    for block in solver.blocks:
        kind, order = _CELLS[block.code]
        types += [kind] * len(block.ids)
        offsets += range(offsets[-1] + len(order), offsets[-1] + len(order) * len(block.ids) + 1, len(order))
        connectivity.append(position[solver.rows(block.nodes[:, order])].ravel())
    cells = vtkCellArray()
    cells.SetData(_ids(offsets), _ids(np.concatenate(connectivity)))
    result.SetCells(numpy_to_vtk(np.array(types, dtype=np.uint8), deep=True), cells)


def _ids(values):
    return numpy_to_vtkIdTypeArray(np.array(values, dtype=np.int64), deep=True)


def _require_writable(path):
    """Raises OSError where no file can be made: VTK would print a page and go on."""
    with open(path, "wb"):
        pass


def write_vtu(result, path):
    """Writes a grid for ParaView or another program that reads VTK's files."""
    _require_writable(path)
    writer = vtkXMLUnstructuredGridWriter()
    writer.SetInputData(result)
    writer.SetFileName(str(path))
    if not writer.Write():
        raise OSError(f"{path} cannot be written")


def write_picture(result, path):
    """Cuts through the middle of the hottest element, one across each axis, with a bar of temperatures."""
    temperatures = vtk_to_numpy(result.GetPointData().GetArray("temperature"))
    span = temperatures.min(), temperatures.max()
    cuts = [_labelled_cut(result, axis, _hottest(result, temperatures), span) for axis in (2, 1, 0)]
    image = _below(_beside(cuts), _bar(span))
    _write_png(np.pad(image, ((_MARGIN,), (_MARGIN,), (0,)), constant_values=255), path)


def _hottest(result, temperatures):
    """The middle of the element with the highest mean temperature."""
    points = vtk_to_numpy(result.GetPoints().GetData())
    offsets = vtk_to_numpy(result.GetCells().GetOffsetsArray())
    nodes = vtk_to_numpy(result.GetCells().GetConnectivityArray())
    means = np.add.reduceat(temperatures[nodes], offsets[:-1]) / np.diff(offsets)
    cell = means.argmax()
    return points[nodes[offsets[cell]:offsets[cell + 1]]].mean(axis=0)


def _labelled_cut(result, axis, at, span):
    text = _text(f"{'xyz'[axis]} = {at[axis]:.4g} m")
    return _below(_cut(result, axis, at, span), text)


def _cut(result, axis, at, span):
    """Colours of the temperatures in a plane across an axis, white where there is nothing."""
    probe = vtkProbeFilter()
    probe.SetInputData(_raster(result, axis, at))
    probe.SetSourceData(result)
    probe.Update()
    found = probe.GetOutput()
    columns, rows = (found.GetDimensions()[other] for other in range(3) if other != axis)
    values = vtk_to_numpy(found.GetPointData().GetArray("temperature"))
    colours = _colours(values, span)
    colours[vtk_to_numpy(found.GetPointData().GetArray("vtkValidPointMask")) == 0] = 255
    return colours.reshape(rows, columns, 3)[::-1]


def _raster(result, axis, at):
    bounds = np.array(result.GetBounds()).reshape(3, 2)
    spacing = np.ptp(bounds, axis=1).max() / _WIDTH
    counts = np.maximum(np.round(np.ptp(bounds, axis=1) / spacing).astype(int), 1)
    origin = bounds[:, 0] + spacing / 2
    counts[axis], origin[axis] = 1, at[axis]
    raster = vtkImageData()
    raster.SetDimensions(*counts.tolist())
    raster.SetSpacing(*[spacing] * 3)
    raster.SetOrigin(*origin)
    return raster


def _colours(values, span):
    """From black over red to yellow, over the whole span of temperatures; brighter is hotter."""
    part = (values - span[0]) / max(span[1] - span[0], np.finfo(float).tiny)
    stops = np.linspace(0, 1, len(_STOPS))
    return np.stack([np.interp(part, stops, channel) for channel in _STOPS.T], axis=-1).astype(np.uint8)


def _bar(span):
    ramp = np.linspace(*span, _WIDTH)
    colours = np.repeat(_colours(ramp, span)[None], _BAR, axis=0)
    low, high = (_text(f"{value:.1f} K") for value in span)
    return _beside([low, colours, high])


def _text(words):
    """Black letters on white."""
    properties, image, size = vtkTextProperty(), vtkImageData(), [0, 0]
    properties.SetFontSize(14)
    vtkTextRenderer.GetInstance().RenderString(properties, words, image, size, 96)
    columns, rows, _ = image.GetDimensions()
    opacity = vtk_to_numpy(image.GetPointData().GetScalars()).reshape(rows, columns, 4)[..., 3]
    grey = 255 - opacity[:size[1], :size[0]][::-1]
    return np.repeat(grey[..., None], 3, axis=2)


def _beside(images):
    rows = max(image.shape[0] for image in images)
    padded = [np.pad(image, ((0, rows - image.shape[0]), (0, _MARGIN), (0, 0)), constant_values=255)
              for image in images]
    return np.hstack(padded)[:, :-_MARGIN]


def _below(upper, lower):
    columns = max(upper.shape[1], lower.shape[1])
    padded = [np.pad(image, ((0, below), (0, columns - image.shape[1]), (0, 0)), constant_values=255)
              for image, below in ((upper, _MARGIN // 3), (lower, 0))]
    return np.vstack(padded)


def _write_png(pixels, path):
    rows, columns, _ = pixels.shape
    image = vtkImageData()
    image.SetDimensions(columns, rows, 1)
    image.GetPointData().SetScalars(_vtk_array(pixels[::-1].reshape(-1, 3).astype(np.uint8)))
    _require_writable(path)
    writer = vtkPNGWriter()
    writer.SetInputData(image)
    writer.SetFileName(str(path))
    writer.Write()
