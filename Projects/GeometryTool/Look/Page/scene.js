// The surfaces in three dimensions. Nothing is drawn unless something has changed. Within the scene a case
// has the size 1 and lies about the origin, whatever its unit and place.

import {
    Box3, Color, DirectionalLight, Group, HemisphereLight, PerspectiveCamera, Plane, Raycaster, Scene as Stage, Sphere,
    Vector2, Vector3, WebGLRenderer,
} from "three";
import { OrbitControls } from "three/addons/controls/OrbitControls.js";
import { KeyboardView } from "./camera.js";
import { cssColour } from "./colours.js";
import { byId } from "./dom.js";
import { Shapes, marks } from "./patches.js";
import { drawTriad } from "./triad.js";

const spatialLook = new Vector3(1, -1.7, 1.1).normalize();
const planarLook = new Vector3(0, -0.001, 1).normalize();
const clickReach = 5; // pixels between pressing and letting go
const glow = 0.55;
const seeThrough = 0.16;

export class Scene {
    constructor(canvas, data, surfaces, visibility) {
        this.canvas = canvas;
        this.visibility = visibility;
        this.renderer = new WebGLRenderer({ canvas, antialias: true, alpha: true });
        this.stage = new Stage();
        this.camera = new PerspectiveCamera(32, 1, 0.001, 50);
        this.camera.up.set(0, 0, 1);
        this.controls = new OrbitControls(this.camera, canvas);
        this.keyboard = new KeyboardView(this.camera, this.controls, () => this.fit());
        this.look = data.info.isPlanar ? planarLook : spatialLook;
        this.hasMeshLines = false;
        this.place(data.surfaces.origin, surfaces.positions);
        this.addLights();
        this.addSurfaces(surfaces);
        this.addMarks(data.verify.findings);
        this.listen();
        this.resize();
        this.fit();
        this.update();
    }

    /** Brings the case to the size of the scene. */
    place(origin, positions) {
        this.box = new Box3().setFromArray(positions);
        if (this.box.isEmpty()) {
            this.box.set(new Vector3(), new Vector3(1, 1, 1));
        }
        this.size = this.box.getSize(new Vector3()).length() || 1;
        this.centre = this.box.getCenter(new Vector3());
        this.origin = new Vector3(...origin);
        this.root = new Group();
        this.root.scale.setScalar(1 / this.size);
        this.root.position.copy(this.centre).multiplyScalar(-1 / this.size);
        this.root.updateMatrixWorld();
        this.stage.add(this.root);
    }

    toScene(point) {
        return new Vector3(...point).sub(this.origin).sub(this.centre).divideScalar(this.size);
    }

    toCase(point) {
        return point.clone().multiplyScalar(this.size).add(this.centre).add(this.origin).toArray();
    }

    addLights() {
        this.lamp = new DirectionalLight(0xffffff, 1.9); // goes with the camera
        this.stage.add(new HemisphereLight(0xffffff, 0x9a9aa4, 1.7), this.lamp, this.lamp.target);
    }

    addSurfaces(surfaces) {
        this.shapes = new Shapes(surfaces.positions, this.box.getBoundingSphere(new Sphere()));
        this.patches = surfaces.patches.map((patch) => this.shapes.patch(patch));
        this.lines = surfaces.lines.map((line) => this.shapes.line(line));
        if (this.patches.length + this.lines.length > 0) {
            this.root.add(...this.patches, ...this.lines);
        }
    }

    addMarks(findings) {
        this.marks = new Group();
        for (const severity of ["warning", "error"]) {
            const places = findings
                .filter((group) => group.severity === severity)
                .flatMap((group) => group.first.map((finding) => finding.place))
                .filter((place) => place && place.every(Number.isFinite))
                .map((place) => this.toScene(place).toArray());
            if (places.length > 0) {
                this.marks.add(marks(places, severity === "error" ? 0xe0353f : 0xe8a020));
            }
        }
        this.stage.add(this.marks);
    }

    listen() {
        this.controls.addEventListener("change", () => this.draw());
        this.visibility.addEventListener("change", () => this.update());
        this.canvas.addEventListener("keydown", (event) => this.keyboard.press(event) && event.preventDefault());
        this.canvas.addEventListener("pointerdown", (event) => (this.pressedAt = [event.clientX, event.clientY]));
        this.canvas.addEventListener("pointerup", (event) => this.release(event));
        matchMedia("(prefers-color-scheme: dark)").addEventListener("change", () => this.update());
        new ResizeObserver(() => this.resize()).observe(this.canvas.parentElement);
    }

    resize() {
        const { clientWidth: width, clientHeight: height } = this.canvas.parentElement;
        this.renderer.setPixelRatio(Math.min(devicePixelRatio, 2));
        this.renderer.setSize(width, height, false);
        this.camera.aspect = width / Math.max(height, 1);
        this.camera.updateProjectionMatrix();
        this.draw();
    }

    /** Looks at all of the case from the first direction. */
    fit() {
        const half = Math.atan(Math.tan((this.camera.fov * Math.PI) / 360) * Math.min(1, this.camera.aspect));
        this.controls.target.set(0, 0, 0);
        this.keyboard.lookFrom(this.look.clone().multiplyScalar(0.5 / Math.sin(half)));
        this.draw();
    }

    /** Looks at a place of the case from nearby. */
    goTo(point) {
        const target = this.toScene(point);
        this.controls.target.copy(target);
        this.keyboard.lookFrom(this.look.clone().multiplyScalar(0.5));
        this.draw();
    }

    /** @param colourOf the colour of a patch; seesThrough, whether one hides nothing behind it */
    dress(colourOf, seesThrough) {
        this.colourOf = colourOf;
        this.seesThrough = seesThrough;
        this.update();
    }

    setMeshLines(areShown) {
        this.hasMeshLines = areShown;
        this.update();
    }

    setMarks(areShown) {
        this.marks.visible = areShown;
        this.draw();
    }

    /** @param fraction of the box, from its low side, behind which nothing is shown; null for all */
    clip(axis, fraction, otherSide) {
        this.renderer.clippingPlanes = axis === null ? [] : [this.planeAt(axis, fraction, otherSide ? 1 : -1)];
        this.draw();
    }

    planeAt(axis, fraction, sign) {
        const normal = new Vector3().setComponent(axis, sign);
        const low = this.box.min.getComponent(axis);
        const at = low + fraction * (this.box.max.getComponent(axis) - low);
        return new Plane(normal, (-sign * (at - this.centre.getComponent(axis))) / this.size);
    }

    /** What a fraction of the box along an axis is in the case. */
    coordinate(axis, fraction) {
        const low = this.box.min.getComponent(axis);
        const high = this.box.max.getComponent(axis);
        return this.origin.getComponent(axis) + low + fraction * (high - low);
    }

    /** @param isChosen of a patch or line */
    highlight(isChosen) {
        this.isChosen = isChosen;
        this.update();
    }

    update() {
        const ink = new Color(cssColour("--ink") || "#000");
        for (const patch of this.patches) {
            patch.visible = this.visibility.isShown(patch.userData);
            this.paint(patch, ink);
        }
        for (const line of this.lines) {
            line.visible = this.visibility.isShown(line.userData);
            line.material.color.copy(this.isChosen?.(line.userData) ? new Color(cssColour("--accent")) : ink);
        }
        this.draw();
    }

    paint(patch, ink) {
        const { material, userData } = patch;
        const isClear = this.seesThrough?.(userData) ?? false;
        material.color.set(this.colourOf?.(userData) ?? "#888");
        material.emissive.set(this.isChosen?.(userData) ? cssColour("--accent") : "#000");
        material.emissiveIntensity = glow;
        material.transparent = isClear;
        material.depthWrite = !isClear;
        material.opacity = isClear ? (this.isChosen?.(userData) ? 0.5 : seeThrough) : 1;
        this.paintMeshLines(patch, ink, isClear);
    }

    paintMeshLines(patch, ink, isClear) {
        if (this.hasMeshLines && !patch.userData.meshLines) {
            patch.userData.meshLines = this.shapes.meshLines(patch.userData);
            patch.add(patch.userData.meshLines);
        }
        const lines = patch.userData.meshLines;
        if (lines) {
            lines.visible = this.hasMeshLines;
            lines.material.color.copy(ink);
            lines.material.opacity = isClear ? 0.1 : 0.4;
        }
    }

    draw() {
        if (!this.awaited) {
            this.awaited = requestAnimationFrame(() => this.drawNow());
        }
    }

    drawNow() {
        this.awaited = 0;
        this.camera.updateMatrixWorld();
        this.lamp.position.copy(this.camera.position).sub(this.controls.target);
        this.renderer.render(this.stage, this.camera);
        drawTriad(byId("triad"), this.camera);
        this.canvas.dataset.drawn = Number(this.canvas.dataset.drawn ?? 0) + 1;
    }

    release(event) {
        const [x, y] = this.pressedAt ?? [Infinity, Infinity];
        if (event.button === 0 && Math.hypot(event.clientX - x, event.clientY - y) < clickReach) {
            this.onclick?.(this.hitsAt(event.clientX, event.clientY));
        }
    }

    /** The patches under a point of the window, the nearest first, each with where it was met. */
    hitsAt(x, y) {
        const frame = this.canvas.getBoundingClientRect();
        const pointer = new Vector2(((x - frame.left) / frame.width) * 2 - 1, 1 - ((y - frame.top) / frame.height) * 2);
        const ray = new Raycaster();
        ray.setFromCamera(pointer, this.camera);
        const isKept = (point) => this.renderer.clippingPlanes.every((plane) => plane.distanceToPoint(point) >= 0);
        const hits = ray.intersectObjects(this.patches.filter((patch) => patch.visible), false);
        return hits
            .filter((hit) => isKept(hit.point))
            .map((hit) => ({ patch: hit.object.userData, place: this.toCase(hit.point) }));
    }
}
