// A plate heat exchanger's channel, in metres: a stream below a thin plate, one above it, and a
// block that stands on the floor in the lower stream. The sides y = 0 and y = width are periodic.
//
// The streams are tetrahedra. The plate is one layer of wedges between them, and conforms: its
// triangles face the streams, its quadrilaterals lie on the outside, where no tetrahedron meets
// them. The block is layers of wedges too, but not joined with the stream: its mesh and that of
// the stream around it lie on faces of their own in the same place.
//
// The periodic sides are divided differently, so that they do not match either, but evenly: the
// translation is that between the means of their mesh vertices.

SetFactory("OpenCASCADE");

DefineConstant[ size = {0.0045, Name "Element size"} ];

length = 0.100; width = 0.050;
below = 0.018; thickness = 0.001; above = 0.016;
x = 0.035; y = 0.015; dx = 0.025; dy = 0.020; dz = 0.008;  // the block
e = 1e-5;  // slack of the boxes that entities are found by

Box(1) = {0, 0, 0, length, width, below};
Box(2) = {x, y, 0, dx, dy, dz};
BooleanDifference(3) = { Volume{1}; Delete; }{ Volume{2}; Delete; };

// Plate and upper stream on the lower one.
plate_below() = Surface In BoundingBox {-e, -e, below - e, length + e, width + e, below + e};
plate[] = Extrude {0, 0, thickness} { Surface{plate_below()}; Layers{1}; Recombine; };
upper_volume[] = Extrude {0, 0, above} { Surface{plate[0]}; };

Physical Volume("lower_stream") = {3};
Physical Volume("plate") = {plate[1]};
Physical Volume("upper_stream") = {upper_volume[1]};
Physical Surface("plate_below") = {plate_below()};
Physical Surface("plate_above") = {plate[0]};

// The two sides of each periodic pair, y = 0 first.
top = below + thickness + above;
lower_first() = Surface In BoundingBox {-e, -e, -e, length + e, e, below + e};
lower_second() = Surface In BoundingBox {-e, width - e, -e, length + e, width + e, below + e};
plate_first() = Surface In BoundingBox {-e, -e, below - e, length + e, e, below + thickness + e};
plate_second() = Surface In BoundingBox {-e, width - e, below - e, length + e, width + e, below + thickness + e};
upper_first() = Surface In BoundingBox {-e, -e, below + thickness - e, length + e, e, top + e};
upper_second() = Surface In BoundingBox {-e, width - e, below + thickness - e, length + e, width + e, top + e};
Physical Surface("lower_first") = {lower_first()};
Physical Surface("lower_second") = {lower_second()};
Physical Surface("plate_first") = {plate_first()};
Physical Surface("plate_second") = {plate_second()};
Physical Surface("upper_first") = {upper_first()};
Physical Surface("upper_second") = {upper_second()};

// The faces of the lower stream around the block.
Physical Surface("around_top") = Surface In BoundingBox {x - e, y - e, dz - e, x + dx + e, y + dy + e, dz + e};
Physical Surface("around_west") = Surface In BoundingBox {x - e, y - e, -e, x + e, y + dy + e, dz + e};
Physical Surface("around_east") = Surface In BoundingBox {x + dx - e, y - e, -e, x + dx + e, y + dy + e, dz + e};
Physical Surface("around_south") = Surface In BoundingBox {x - e, y - e, -e, x + dx + e, y + e, dz + e};
Physical Surface("around_north") = Surface In BoundingBox {x - e, y + dy - e, -e, x + dx + e, y + dy + e, dz + e};

side_y[] = {0, width};
side_size[] = {size, 0.75 * size};
For i In {0 : 1}
  a = side_y[i] - e;
  b = side_y[i] + e;
  along() = Curve In BoundingBox {-e, a, -e, length + e, b, e};
  along() += Curve In BoundingBox {-e, a, below - e, length + e, b, below + e};
  along() += Curve In BoundingBox {-e, a, top - e, length + e, b, top + e};
  Transfinite Curve{along()} = 1 + Round(length / side_size[i]);
  For j In {0 : 1}
    lower() = Curve In BoundingBox {j * length - e, a, -e, j * length + e, b, below + e};
    upper() = Curve In BoundingBox {j * length - e, a, below + thickness - e, j * length + e, b, top + e};
    Transfinite Curve{lower()} = 1 + Round(below / side_size[i]);
    Transfinite Curve{upper()} = 1 + Round(above / side_size[i]);
  EndFor
EndFor
Transfinite Surface{lower_first(), lower_second(), upper_first(), upper_second()};

// The block, by the built-in kernel: the other one would mesh the faces around it like its own.
SetFactory("Built-in");
Point(2001) = {x, y, 0};
Point(2002) = {x + dx, y, 0};
Point(2003) = {x + dx, y + dy, 0};
Point(2004) = {x, y + dy, 0};
Line(2001) = {2001, 2002};
Line(2002) = {2002, 2003};
Line(2003) = {2003, 2004};
Line(2004) = {2004, 2001};
Curve Loop(2001) = {2001 : 2004};
Plane Surface(2001) = {2001};
block[] = Extrude {0, 0, dz} { Surface{2001}; Layers{3}; Recombine; };
MeshSize{ 2001 : 2004 } = 0.8 * size;

Physical Volume("block") = {block[1]};
Physical Surface("block_top") = {block[0]};
Physical Surface("block_south") = {block[2]};
Physical Surface("block_east") = {block[3]};
Physical Surface("block_north") = {block[4]};
Physical Surface("block_west") = {block[5]};

Mesh.MeshSizeMax = size;
Mesh.Algorithm = 6;
