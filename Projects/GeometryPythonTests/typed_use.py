"""What programs do with the package, for mypy to agree to; and, commented, what it must not."""

import numpy as np

import ovrageo

case = ovrageo.Case()
vertex: ovrageo.ModelVertex = case.model.add_vertex((0, 0, 0))
vertex.point = (1, 2, 3)
vertex.point = np.zeros(3)
z: float = vertex.point.z
case.model.add_face().box = ((0, 0, 0), (1, 1, 1))
case.mesh.vertices.coordinates = [[0, 0, 0]]
names: list[str] = [face.name for face in case.model.faces]
ids: list[int] = case.mesh.regions.ids.tolist()
first: ovrageo.MeshRegion = case.mesh.regions[1]
corners: tuple[ovrageo.MeshVertex, ...] = first.vertices
first.parent = case.model.regions[1]
case.model.faces[1].attributes["material_id"] = 3
case.mesh.vertices.select([1]).set_attribute("mesh_size", 0.5)

case.model.faces[1].nonsense()  # type: ignore[attr-defined]
vertex.point = "abc"  # type: ignore[assignment]
case.mesh.vertices[1].neighbours("2")  # type: ignore[arg-type]
