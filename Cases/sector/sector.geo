// One of nine sectors of a rotor, in metres, about the z axis: a solid ring with a blade on it, and
// the passage around the blade.
//
// The two sides of the sector are planar and 40 degrees apart. They are meshed to different sizes,
// so that no vertex of one side need lie on a vertex of the other.

SetFactory("OpenCASCADE");

DefineConstant[ size = {0.0035, Name "Element size"} ];

angle = 2 * Pi / 9; bore = 0.020; hub = 0.030; shroud = 0.060; height = 0.030;
e = 1e-5;  // slack of the boxes that entities are found by

// Outlines in the plane of the first side, turned about the axis.
Rectangle(1) = {bore, 0, 0, hub - bore, height};
Rectangle(2) = {hub, 0, 0, shroud - hub, height};
Rotate {{1, 0, 0}, {0, 0, 0}, Pi / 2} { Surface{1, 2}; }
ring[] = Extrude {{0, 0, 1}, {0, 0, 0}, angle} { Surface{1}; };
passage[] = Extrude {{0, 0, 1}, {0, 0, 0}, angle} { Surface{2}; };

// The blade, from within the ring to short of the shroud, pitched about its own length.
Box(10) = {hub - 0.002, -0.001, -0.010, 0.024, 0.002, 0.020};
Rotate {{1, 0, 0}, {0, 0, 0}, Pi / 6} { Volume{10}; }
Translate {0, 0, height / 2} { Volume{10}; }
Rotate {{0, 0, 1}, {0, 0, 0}, angle / 2} { Volume{10}; }

BooleanUnion(20) = { Volume{ring[1]}; Delete; }{ Volume{10}; Delete; };
BooleanDifference(30) = { Volume{passage[1]}; Delete; }{ Volume{20}; };
BooleanFragments{ Volume{20, 30}; Delete; }{ }

Physical Volume("wheel") = {20};
Physical Volume("passage") = {30};

c = Cos(angle);
s = Sin(angle);
ring_first() = Surface In BoundingBox {bore - e, -e, -e, hub + e, e, height + e};
ring_second() = Surface In BoundingBox {bore * c - e, bore * s - e, -e, hub * c + e, hub * s + e, height + e};
passage_first() = Surface In BoundingBox {hub - e, -e, -e, shroud + e, e, height + e};
passage_second() = Surface In BoundingBox {hub * c - e, hub * s - e, -e, shroud * c + e, shroud * s + e, height + e};
Physical Surface("ring_first") = {ring_first()};
Physical Surface("ring_second") = {ring_second()};
Physical Surface("passage_first") = {passage_first()};
Physical Surface("passage_second") = {passage_second()};

MeshSize{ PointsOf{ Volume{20, 30}; } } = size;
MeshSize{ PointsOf{ Surface{ring_second(), passage_second()}; } } = 0.7 * size;
Mesh.MeshSizeMax = size;
Mesh.Algorithm = 6;
